#include "platform/wayland/client/connection.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "platform/wayland/client/calls.h"

namespace kivra::wayland {

namespace {

/// Nothing where the session has no compositor: libwayland would look for one of another session's.
wl_display* connect(const std::string& name) {
  if (!name.empty()) return wl_display_connect(name.c_str());
  const auto isNamed =
      std::getenv("WAYLAND_DISPLAY") != nullptr || std::getenv("WAYLAND_SOCKET") != nullptr;
  return isNamed ? wl_display_connect(nullptr) : nullptr;
}

}  // namespace

Connection::Connection(const std::string& name)
    : display_(connect(name), wl_display_disconnect), registry_(nullptr, wl_registry_destroy) {
  if (!display_) throw std::runtime_error("нет композитора Wayland (WAYLAND_DISPLAY)");
  registry_.reset(wl_display_get_registry(display_.get()));
  static constexpr wl_registry_listener listener = {Calls<&Connection::addGlobal>{},
                                                    Calls<&Connection::removeGlobal>{}};
  wl_registry_add_listener(registry_.get(), &listener, this);
  if (!roundtrip()) throw std::runtime_error("композитор Wayland не отвечает");
}

std::string Connection::serverName() const {
  ucred peer{};
  socklen_t size = sizeof peer;
  if (::getsockopt(fd(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return {};
  std::ifstream file("/proc/" + std::to_string(peer.pid) + "/comm");
  std::string name;
  std::getline(file, name);
  return name;
}

bool Connection::dispatch() {
  auto* const display = display_.get();
  while (wl_display_prepare_read(display) != 0) {
    if (wl_display_dispatch_pending(display) < 0) return false;
  }
  return wl_display_read_events(display) >= 0 && wl_display_dispatch_pending(display) >= 0;
}

bool Connection::roundtrip(std::chrono::milliseconds patience) {
  using Clock = std::chrono::steady_clock;
  static constexpr wl_callback_listener listener = {
      [](void* isDone, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
        *static_cast<bool*>(isDone) = true;
      }};
  bool isDone = false;
  const Owned<wl_callback> callback(wl_display_sync(display_.get()), wl_callback_destroy);
  wl_callback_add_listener(callback.get(), &listener, &isDone);
  const auto until = Clock::now() + patience;
  for (flush(); dispatch() && !isDone; flush()) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
    if (left.count() <= 0) break;
    pollfd descriptor{.fd = fd(), .events = POLLIN, .revents = 0};
    ::poll(&descriptor, 1, static_cast<int>(left.count()));
  }
  return isDone;
}

void Connection::flush() {
  constexpr int patience = 1000;  // ms
  unsent_ = 0;
  pollfd waited{.fd = fd(), .events = POLLOUT, .revents = 0};
  while (wl_display_flush(display_.get()) < 0 && errno == EAGAIN) {
    if (::poll(&waited, 1, patience) <= 0) return;
  }
}

// libwayland keeps 4 KB back, and breaks the connection when a request finds no room in them.
void Connection::makeRoom() {
  constexpr int mostUnsent = 64;  // of 28 bytes at most
  if (++unsent_ >= mostUnsent) flush();
}

void Connection::addGlobal(std::uint32_t name, const char* interface, std::uint32_t version) {
  globals_.try_emplace(interface, Global{name, version});
}

void Connection::removeGlobal(std::uint32_t name) {
  std::erase_if(globals_, [name](const auto& global) { return global.second.name == name; });
}

void* Connection::bindGlobal(const wl_interface& interface, std::uint32_t version) {
  const auto found = globals_.find(interface.name);
  if (found == globals_.end()) {
    throw std::runtime_error(std::string("композитор Wayland не умеет: ") + interface.name);
  }
  const auto& [name, offered] = found->second;
  return wl_registry_bind(registry_.get(), name, &interface, std::min(version, offered));
}

}  // namespace kivra::wayland
