#include "platform/wayland/client/connection.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>

#include "platform/wayland/client/calls.h"

namespace kivra::wayland {

namespace {

/// Nothing where the session has no compositor: libwayland would look for one of another session's.
wl_display* connect() {
  const auto isNamed =
      std::getenv("WAYLAND_DISPLAY") != nullptr || std::getenv("WAYLAND_SOCKET") != nullptr;
  return isNamed ? wl_display_connect(nullptr) : nullptr;
}

}  // namespace

Connection::Connection()
    : display_(connect(), wl_display_disconnect), registry_(nullptr, wl_registry_destroy) {
  if (!display_) throw std::runtime_error("нет композитора Wayland (WAYLAND_DISPLAY)");
  registry_.reset(wl_display_get_registry(display_.get()));
  static constexpr wl_registry_listener listener = {Calls<&Connection::addGlobal>{},
                                                    Calls<&Connection::removeGlobal>{}};
  wl_registry_add_listener(registry_.get(), &listener, this);
  if (!roundtrip()) throw std::runtime_error("композитор Wayland не отвечает");
}

bool Connection::dispatch() {
  auto* const display = display_.get();
  while (wl_display_prepare_read(display) != 0) {
    if (wl_display_dispatch_pending(display) < 0) return false;
  }
  return wl_display_read_events(display) >= 0 && wl_display_dispatch_pending(display) >= 0;
}

void Connection::flush() {
  constexpr int patience = 1000;  // ms
  pollfd waited{.fd = fd(), .events = POLLOUT, .revents = 0};
  while (wl_display_flush(display_.get()) < 0 && errno == EAGAIN) {
    if (::poll(&waited, 1, patience) <= 0) return;
  }
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
