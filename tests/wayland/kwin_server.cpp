#include "kwin_server.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "unix_socket.h"
#include "x_session.h"

namespace kivra::e2e {

namespace {

constexpr auto kwinDisplay = "wayland-9";

int listenAt(const std::filesystem::path& path) {
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  std::ranges::copy(path.string(), address.sun_path);
  const int fd = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
  if (::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      ::listen(fd, 8) != 0) {
    throw std::runtime_error("no socket for guards");
  }
  return fd;
}

}  // namespace

KwinServer::KwinServer(const Options& options)
    : environment_(bus_.environment()), listener_(listenAt(path("guards"))) {
  std::filesystem::create_directories(path("config"));
  std::ofstream(path("config") / "kxkbrc") << "[Layout]\nLayoutList=us,ru\nUse=true\n";
  std::ofstream(path("config") / "kwinrc") << options.configuration;
  // KWin has a capability that not every container grants; a copy has none.
  std::filesystem::copy_file("/usr/bin/kwin_wayland", path("kwin_wayland"));
  for (const auto& [name, value] : options.environment) environment_[name] = value;
  auto own = environment_;
  own.insert({{"KWIN_COMPOSE", "Q"},
              {"KWIN_WAYLAND_NO_PERMISSION_CHECKS", "1"},
              {"KIVRA_GUARDS", path("guards")}});
  std::vector<std::string> command = {path("kwin_wayland"), "--virtual", "--no-lockscreen",
                                      "--socket", kwinDisplay};
  // Root's KWin would be served before all else on the machine, other tests' sessions among it.
  if (::geteuid() == 0) {
    command.insert(command.begin(), {"setpriv", "--bounding-set", "-sys_nice"});
  }
  if (options.hasTestsGuard) command.insert(command.end(), {"--inputmethod", KIVRA_GUARD_FOR_KWIN});
  kwin_ = std::make_unique<ChildProcess>(
      command, ChildProcess::Options{.environment = own, .outputFile = path("kwin.log")});
  if (!waitFor([this] { return isServed(path(kwinDisplay)); }, std::chrono::seconds(20))) {
    throw std::runtime_error("KWin does not start: " + readFile("kwin.log"));
  }
  environment_["WAYLAND_DISPLAY"] = kwinDisplay;
  environment_["XDG_SESSION_TYPE"] = "wayland";
  for (const auto& [name, value] : environment_) ::setenv(name.c_str(), value.c_str(), 1);
}

KwinServer::~KwinServer() {
  kwin_.reset();
  ::close(listener_);
}

std::string KwinServer::readFile(const std::string& name) const {
  std::ifstream file(path(name));
  return {std::istreambuf_iterator(file), {}};
}

void KwinServer::selectLayout(int layout) const {
  const auto select = [&] {
    return outputOf({"gdbus", "call", "--session", "-d", "org.kde.keyboard", "-o", "/Layouts", "-m",
                     "org.kde.KeyboardLayouts.setLayout", std::to_string(layout)},
                    environment_);
  };
  if (!waitFor([&] { return !select().empty(); })) throw std::runtime_error("no layouts");
}

int KwinServer::acceptGuard() const {
  constexpr int patience = 20'000;  // ms
  pollfd waited{.fd = listener_, .events = POLLIN, .revents = 0};
  if (::poll(&waited, 1, patience) != 1) throw std::runtime_error("no guard comes");
  return ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
}

}  // namespace kivra::e2e
