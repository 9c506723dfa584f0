#include "sway_server.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "x_session.h"

namespace kivra::e2e {

namespace {

// Debian's "nobody" and "nogroup".
constexpr uid_t nobody = 65534;

}  // namespace

SwayServer::SwayServer(const Options& options) : environment_(options.environment) {
  std::string pattern = std::filesystem::temp_directory_path() / "kivra-sway-XXXXXX";
  home_ = ::mkdtemp(pattern.data());
  runtime_ = home_ / "run";
  std::filesystem::create_directory(runtime_);
  std::filesystem::permissions(home_, std::filesystem::perms{0755});
  std::filesystem::permissions(runtime_, std::filesystem::perms::owner_all);
  writeConfiguration(options);
  environment_.insert({{"PATH", std::getenv("PATH")}, {"HOME", home_}, {"LC_ALL", "C.UTF-8"}});
  environment_["XDG_RUNTIME_DIR"] = runtime_;
  environment_["XDG_SESSION_TYPE"] = "wayland";
  if (const auto* leaks = std::getenv("LSAN_OPTIONS")) environment_["LSAN_OPTIONS"] = leaks;

  auto own = environment_;
  own.insert(
      {{"WLR_BACKENDS", "headless"}, {"WLR_LIBINPUT_NO_DEVICES", "1"}, {"WLR_RENDERER", "pixman"}});
  if (::geteuid() == 0 && ::chown(runtime_.c_str(), nobody, nobody) != 0) {
    throw std::runtime_error("cannot give the runtime folder away");
  }
  sway_ = std::make_unique<ChildProcess>(
      asItsUser({"sway", "--config", home_ / "sway.conf"}),
      ChildProcess::Options{.environment = own, .outputFile = home_ / "sway.log"});
  const auto isReady = [this] {
    const auto display = runtimeEntry("wayland-");
    const auto control = runtimeEntry("sway-ipc.");
    if (display.empty() || control.empty()) return false;
    environment_["WAYLAND_DISPLAY"] = display;
    environment_["SWAYSOCK"] = runtime_ / control;
    return message({"-t", "get_version"}).find("human_readable") != std::string::npos;
  };
  if (!waitFor(isReady)) throw std::runtime_error("sway does not start: " + readFile("sway.log"));
}

SwayServer::~SwayServer() {
  sway_.reset();
  std::error_code error;
  std::filesystem::remove_all(home_, error);
}

void SwayServer::enter() const {
  for (const auto& [name, value] : environment_) ::setenv(name.c_str(), value.c_str(), 1);
}

std::unique_ptr<ChildProcess> SwayServer::start(const std::vector<std::string>& command,
                                                const std::string& log) {
  const auto output = log.empty() ? std::string() : path(log).string();
  return std::make_unique<ChildProcess>(
      command, ChildProcess::Options{.environment = environment_, .outputFile = output});
}

std::string SwayServer::message(const std::vector<std::string>& arguments) const {
  std::vector<std::string> command = {"swaymsg", "-r"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return outputOf(command, environment_);
}

std::string SwayServer::readFile(const std::string& name) const {
  std::ifstream file(path(name));
  return {std::istreambuf_iterator(file), {}};
}

std::vector<std::string> SwayServer::asItsUser(std::vector<std::string> command) {
  if (::geteuid() == 0) {
    const auto id = std::to_string(nobody);
    command.insert(command.begin(), {"setpriv", "--reuid", id, "--regid", id, "--clear-groups"});
  }
  return command;
}

void SwayServer::writeConfiguration(const Options& options) const {
  // On a machine that stands still for a moment, applications would repeat keys that hands hold as
  // briefly as ever.
  std::ofstream(home_ / "sway.conf")
      << "xwayland disable\n"
         "focus_follows_mouse no\n"
         "output HEADLESS-1 resolution 1024x768\n"
         "input * {\n  repeat_delay 3000\n  xkb_layout "
      << options.layouts << "\n  xkb_options \"" << options.xkbOptions << "\"\n}\n"
      << options.moreConfig << '\n';
}

std::string SwayServer::runtimeEntry(const std::string& prefix) const {
  for (const auto& entry : std::filesystem::directory_iterator(runtime_)) {
    auto name = entry.path().filename().string();
    if (name.starts_with(prefix) && !name.ends_with(".lock")) return name;
  }
  return "";
}

}  // namespace kivra::e2e
