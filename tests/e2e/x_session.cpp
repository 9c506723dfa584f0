#include "x_session.h"

#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace kivra::e2e {

namespace {

using namespace std::chrono_literals;

bool hasWindowManager(const Environment& environment) {
  return outputOf({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}, environment).find("window id") !=
         std::string::npos;
}

}  // namespace

bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(5ms);
  }
  return true;
}

XSession::XSession(const Options& options) {
  std::string pattern = std::filesystem::temp_directory_path() / "kivra-e2e-XXXXXX";
  home_ = ::mkdtemp(pattern.data());
  server_ = std::make_unique<XServer>(options.server, home_);
  environment_ = {{"PATH", std::getenv("PATH")},
                  {"HOME", home_},
                  {"DISPLAY", display()},
                  {"LC_ALL", "C.UTF-8"},
                  {"XDG_RUNTIME_DIR", home_},
                  {"XDG_CONFIG_HOME", home_ / "config"},
                  {"XDG_DATA_HOME", home_ / "data"},
                  // Indexes of the dictionaries are made once for all tests.
                  {"XDG_CACHE_HOME", KIVRA_E2E_CACHE},
                  {"QT_QPA_PLATFORM", "xcb"},
                  {"GTK_MODULES", "gail:atk-bridge"}};
  if (const auto* leaks = std::getenv("LSAN_OPTIONS")) environment_["LSAN_OPTIONS"] = leaks;
  bus_ = std::make_unique<SessionBus>(home_, environment_);
  if (options.accessibility) switchAccessibilityOn();
  if (options.server.deviceLayouts.empty()) {
    run({"setxkbmap", "-rules", "evdev", "-model", "pc105", "-layout", options.layouts, "-variant",
         options.variants, "-option", "", "-option", options.xkbOptions});
  }
  if (!options.windowManager) return;
  windowManager_ = start({"openbox"});
  if (!waitFor([this] { return hasWindowManager(environment_); })) {
    throw std::runtime_error("openbox does not start");
  }
}

XSession::~XSession() {
  kivra_.reset();
  windowManager_.reset();
  bus_.reset();
  server_.reset();
  std::error_code error;
  std::filesystem::remove_all(home_, error);
}

std::unique_ptr<ChildProcess> XSession::start(const std::vector<std::string>& command,
                                              const std::string& log) {
  return std::make_unique<ChildProcess>(
      command, ChildProcess::Options{.environment = environment_,
                                     .outputFile = log.empty() ? "" : home_ / log});
}

ChildProcess& XSession::startKivra(const std::vector<std::string>& command) {
  kivra_ = start(command, "kivra.log");
  if (!waitFor([this] { return isKeyboardHeld(); }, 20s)) {
    throw std::runtime_error("Kivra does not take the keyboard: " + kivraLog());
  }
  return *kivra_;
}

bool XSession::isKeyboardHeld() const {
  constexpr int coreKeyboard = 3;  // on every server
  auto* const connection = XOpenDisplay(display().c_str());
  if (connection == nullptr) return false;
  int major = 2;
  int minor = 2;
  XIQueryVersion(connection, &major, &minor);
  int count = 0;
  int held = 0;
  int free = 0;
  auto* const devices = XIQueryDevice(connection, XIAllDevices, &count);
  for (const auto& device : std::span(devices, static_cast<std::size_t>(count))) {
    const auto isXtest = std::string_view(device.name).find("XTEST") != std::string_view::npos;
    if (device.enabled == 0 || isXtest) continue;
    if (device.use == XISlaveKeyboard && device.attachment == coreKeyboard) ++free;
    if (device.use == XIFloatingSlave) ++held;
  }
  XIFreeDeviceInfo(devices);
  XCloseDisplay(connection);
  return held > 0 && free == 0;
}

pid_t XSession::childOf(pid_t process) {
  if (process == 0) return 0;
  const auto children = run({"pgrep", "-P", std::to_string(process)});
  return children.empty() ? 0 : std::stoi(children);
}

std::string XSession::readFile(const std::string& name) const {
  std::ifstream file(home_ / name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace kivra::e2e
