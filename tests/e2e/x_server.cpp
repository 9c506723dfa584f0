#include "x_server.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace kivra::e2e {

namespace {

constexpr auto head = R"(Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "BlankTime" "0"
EndSection
Section "Device"
  Identifier "dummy"
  Driver "dummy"
EndSection
Section "Monitor"
  Identifier "monitor"
  HorizSync 5-1000
  VertRefresh 5-200
EndSection
Section "Screen"
  Identifier "screen"
  Device "dummy"
  Monitor "monitor"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
    Modes "1024x768"
  EndSubSection
EndSection
)";

std::string deviceSection(const std::string& name, const std::string& type,
                          const std::filesystem::path& socket, const std::string& more) {
  return "Section \"InputDevice\"\n  Identifier \"" + name + "\"\n  Driver \"inputtest\"\n" +
         "  Option \"SocketPath\" \"" + socket.string() + "\"\n  Option \"DeviceType\" \"" + type +
         "\"\n" + more + "EndSection\n";
}

/// The number of the display that the server writes when it is ready.
std::string readNumber(int fd) {
  constexpr int patience = 20000;  // ms
  std::string number;
  pollfd descriptor{.fd = fd, .events = POLLIN, .revents = 0};
  while (number.find('\n') == std::string::npos && ::poll(&descriptor, 1, patience) > 0) {
    std::array<char, 16> buffer{};
    const auto size = ::read(fd, buffer.data(), buffer.size());
    if (size <= 0) break;
    number.append(buffer.data(), static_cast<std::size_t>(size));
  }
  return number.ends_with('\n') ? number.substr(0, number.size() - 1) : "";
}

}  // namespace

XServer::XServer(const Options& options, std::filesystem::path folder)
    : options_(options), folder_(std::move(folder)) {
  if (options_.kind == Kind::xorg) writeConfiguration();
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  process_ = std::make_unique<ChildProcess>(
      command(),
      ChildProcess::Options{.environment = {{"PATH", std::getenv("PATH")}, {"HOME", folder_}},
                            .outputFile = folder_ / "server.log",
                            .inheritedFd = ends[1]});
  ::close(ends[1]);
  const auto number = readNumber(ends[0]);
  ::close(ends[0]);
  if (number.empty()) throw std::runtime_error(command().front() + " does not start");
  display_ = ":" + number;
}

std::filesystem::path XServer::socket(int keyboard) const {
  return folder_ / (options_.kind == Kind::xvnc ? "viewer" : "keyboard" + std::to_string(keyboard));
}

std::unique_ptr<Keyboard> XServer::openKeyboard(int number) const {
  switch (options_.kind) {
    case Kind::xorg:
      return openXorgKeyboard(socket(number));
    case Kind::xvnc:
      return openVncKeyboard(socket(number));
    case Kind::xvfb:
      break;
  }
  return openXtestKeyboard(display_);
}

Keyboard& XServer::keyboard(int number, bool isReopened) {
  auto& keyboard = keyboards_[number];
  if (isReopened) keyboard.reset();
  if (!keyboard) keyboard = openKeyboard(number);
  return *keyboard;
}

void XServer::writeConfiguration() const {
  std::string devices;
  std::string layout = "Section \"ServerLayout\"\n  Identifier \"layout\"\n  Screen \"screen\"\n";
  std::string map;
  if (!options_.deviceLayouts.empty()) {
    map =
        "  Option \"XkbRules\" \"evdev\"\n  Option \"XkbModel\" \"pc105\"\n  Option \"XkbLayout\" "
        "\"" +
        options_.deviceLayouts + "\"\n  Option \"XkbOptions\" \"" + options_.deviceOptions + "\"\n";
  }
  for (int i = 0; i < options_.keyboards; ++i) {
    const auto name = "keyboard" + std::to_string(i);
    devices += deviceSection(name, "Keyboard", socket(i), map);
    layout +=
        "  InputDevice \"" + name + "\" \"" + (i == 0 ? "CoreKeyboard" : "SendCoreEvents") + "\"\n";
  }
  devices += deviceSection("pointer", "Pointer", folder_ / "pointer", "");
  layout += "  InputDevice \"pointer\" \"CorePointer\"\nEndSection\n";
  std::ofstream(folder_ / "xorg.conf") << head << devices << layout;
}

std::vector<std::string> XServer::command() const {
  std::vector<std::string> command;
  switch (options_.kind) {
    case Kind::xorg:
      command = {"/usr/lib/xorg/Xorg",
                 "-config",
                 folder_ / "xorg.conf",
                 "-logfile",
                 folder_ / "xorg.log",
                 "-seat",
                 "seat-kivra",
                 "-novtswitch",
                 "-noreset"};
      break;
    case Kind::xvnc:
      command = {"Xvnc", "-rfbunixpath", socket(0),   "-rfbport", "-1",     "-SecurityTypes",
                 "None", "-RawKeyboard", "-geometry", "1024x768", "-depth", "24"};
      break;
    case Kind::xvfb:
      command = {"Xvfb", "-noreset", "-screen", "0", "1024x768x24"};
      break;
  }
  // On a machine that stands still for a moment the server would repeat keys that hands hold as
  // briefly as ever.
  command.insert(command.end(), {"-displayfd", "3", "-nolisten", "tcp", "-ardelay", "3000"});
  command.insert(command.end(), options_.arguments.begin(), options_.arguments.end());
  return command;
}

}  // namespace kivra::e2e
