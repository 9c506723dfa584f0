#include "x_session.h"

#include <X11/Xlib.h>
#include <X11/keysym.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace kivra::e2e {

namespace {

using namespace std::chrono_literals;

constexpr auto busEnable = {"gdbus",
                            "call",
                            "--session",
                            "-d",
                            "org.a11y.Bus",
                            "-o",
                            "/org/a11y/bus",
                            "-m",
                            "org.freedesktop.DBus.Properties.Set",
                            "org.a11y.Status",
                            "IsEnabled",
                            "<true>"};

bool grabFailed = false;

int noteFailure(Display* /*display*/, XErrorEvent* /*event*/) {
  grabFailed = true;
  return 0;
}

bool hasWindowManager(const Environment& environment) {
  return outputOf({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}, environment).find("window id") !=
         std::string::npos;
}

}  // namespace

bool isServed(const std::filesystem::path& socket) {
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  const auto path = socket.string();
  if (path.size() >= sizeof address.sun_path) throw std::runtime_error("path too long: " + path);
  std::ranges::copy(path, address.sun_path);
  const auto fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const auto result = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  ::close(fd);
  return result == 0;
}

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
  startServer(options.serverArguments);
  environment_ = {{"PATH", std::getenv("PATH")},
                  {"HOME", home_},
                  {"DISPLAY", display_},
                  {"LC_ALL", "C.UTF-8"},
                  {"XDG_RUNTIME_DIR", home_},
                  {"XDG_CONFIG_HOME", home_ / "config"},
                  {"XDG_DATA_HOME", home_ / "data"},
                  // Indexes of the dictionaries are made once for all tests.
                  {"XDG_CACHE_HOME", KIVRA_E2E_CACHE},
                  {"QT_QPA_PLATFORM", "xcb"},
                  {"GTK_MODULES", "gail:atk-bridge"}};
  if (const auto* leaks = std::getenv("LSAN_OPTIONS")) environment_["LSAN_OPTIONS"] = leaks;
  startBus();
  if (options.accessibility) switchAccessibilityOn();
  run({"setxkbmap", "-layout", options.layouts, "-variant", options.variants, "-option",
       options.xkbOptions});
  if (!options.windowManager) return;
  // The first key of a keyboard has its map announced, and openbox is for a moment without its own
  // keys when it hears of that: the key comes before it.
  run({"xdotool", "key", "Shift_L"});
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

void XSession::startServer(const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  std::vector<std::string> command = {"Xvfb", "-displayfd",  "3",         "-noreset", "-screen",
                                      "0",    "1000x700x24", "-nolisten", "tcp"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  server_ = std::make_unique<ChildProcess>(
      command, ChildProcess::Options{.environment = {{"PATH", std::getenv("PATH")}},
                                     .inheritedFd = ends[1]});
  ::close(ends[1]);
  std::string number;
  pollfd descriptor{.fd = ends[0], .events = POLLIN, .revents = 0};
  while (number.find('\n') == std::string::npos && ::poll(&descriptor, 1, 10000) > 0) {
    std::array<char, 16> buffer{};
    const auto size = ::read(ends[0], buffer.data(), buffer.size());
    if (size <= 0) break;
    number.append(buffer.data(), static_cast<std::size_t>(size));
  }
  ::close(ends[0]);
  if (number.empty() || number.back() != '\n') throw std::runtime_error("Xvfb does not start");
  display_ = ":" + number.substr(0, number.size() - 1);
}

void XSession::startBus() {
  const auto address = "unix:path=" + (home_ / "bus").string();
  environment_["DBUS_SESSION_BUS_ADDRESS"] = address;
  bus_ = start({"dbus-daemon", "--session", "--nofork", "--address=" + address});
  if (!waitFor([this] { return isServed(home_ / "bus"); })) {
    throw std::runtime_error("dbus-daemon does not start");
  }
}

void XSession::switchAccessibilityOn() {
  if (run({busEnable.begin(), busEnable.end()}).find("()") == std::string::npos) {
    throw std::runtime_error("no accessibility bus (at-spi2-core)");
  }
}

std::unique_ptr<ChildProcess> XSession::start(const std::vector<std::string>& command,
                                              const std::string& log) {
  return std::make_unique<ChildProcess>(
      command, ChildProcess::Options{.environment = environment_,
                                     .outputFile = log.empty() ? "" : home_ / log});
}

ChildProcess& XSession::startKivra(const std::vector<std::string>& command) {
  kivra_ = start(command, "kivra.log");
  if (!waitFor([this] { return isSpaceGrabbed(); }, 20s)) {
    throw std::runtime_error("Kivra does not take the keyboard: " + kivraLog());
  }
  return *kivra_;
}

bool XSession::isSpaceGrabbed() const {
  auto* const display = XOpenDisplay(display_.c_str());
  if (display == nullptr) return false;
  grabFailed = false;
  auto* const previous = XSetErrorHandler(noteFailure);
  // Kivra must not find the key taken by the very question.
  XGrabServer(display);
  Window focused = None;
  int revert = 0;
  XGetInputFocus(display, &focused, &revert);
  for (const auto window : {focused, DefaultRootWindow(display)}) {
    if (window == None || window == PointerRoot) continue;
    XGrabKey(display, XKeysymToKeycode(display, XK_space), 0, window, False, GrabModeAsync,
             GrabModeAsync);
  }
  XCloseDisplay(display);
  XSetErrorHandler(previous);
  return grabFailed;
}

pid_t XSession::guardPid() {
  const auto children = run({"pgrep", "-P", std::to_string(kivra_->pid())});
  return children.empty() ? 0 : std::stoi(children);
}

std::string XSession::readFile(const std::string& name) const {
  std::ifstream file(home_ / name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace kivra::e2e
