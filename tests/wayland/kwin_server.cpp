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

constexpr auto display = "wayland-9";

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

KwinServer::KwinServer() : listener_(listenAt(path("guards"))) {
  std::filesystem::create_directories(path("config"));
  std::ofstream(path("config") / "kxkbrc") << "[Layout]\nLayoutList=us,ru\nUse=true\n";
  // KWin has a capability that not every container grants; a copy has none.
  std::filesystem::copy_file("/usr/bin/kwin_wayland", path("kwin_wayland"));
  auto environment = bus_.environment();
  environment.insert({{"KWIN_COMPOSE", "Q"},
                      {"KWIN_WAYLAND_NO_PERMISSION_CHECKS", "1"},
                      {"KIVRA_GUARDS", path("guards")}});
  kwin_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{path("kwin_wayland"), "--virtual", "--no-lockscreen", "--socket",
                               display, "--inputmethod", KIVRA_GUARD_FOR_KWIN},
      ChildProcess::Options{.environment = environment, .outputFile = path("kwin.log")});
  if (!waitFor([this] { return isServed(path(display)); }, std::chrono::seconds(20))) {
    std::ifstream log(path("kwin.log"));
    throw std::runtime_error("KWin does not start: " +
                             std::string(std::istreambuf_iterator(log), {}));
  }
  bus_.enter();
  ::setenv("WAYLAND_DISPLAY", display, 1);
}

KwinServer::~KwinServer() {
  kwin_.reset();
  ::close(listener_);
}

Environment KwinServer::environment() const {
  auto environment = bus_.environment();
  environment["WAYLAND_DISPLAY"] = display;
  environment["XDG_SESSION_TYPE"] = "wayland";
  return environment;
}

void KwinServer::selectLayout(int layout) const {
  const auto select = [&] {
    return outputOf({"gdbus", "call", "--session", "-d", "org.kde.keyboard", "-o", "/Layouts", "-m",
                     "org.kde.KeyboardLayouts.setLayout", std::to_string(layout)},
                    bus_.environment());
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
