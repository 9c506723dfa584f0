#include "platform/wayland/client/connection.h"

#include <algorithm>
#include <stdexcept>

#include "platform/wayland/client/calls.h"

namespace kivra::wayland {

Connection::Connection()
    : display_(wl_display_connect(nullptr), wl_display_disconnect),
      registry_(nullptr, wl_registry_destroy) {
  if (!display_) throw std::runtime_error("нет композитора Wayland (WAYLAND_DISPLAY)");
  registry_.reset(wl_display_get_registry(display_.get()));
  static constexpr wl_registry_listener listener = {Calls<&Connection::addGlobal>{},
                                                    Calls<&Connection::removeGlobal>{}};
  wl_registry_add_listener(registry_.get(), &listener, this);
  if (!roundtrip()) throw std::runtime_error("композитор Wayland не отвечает");
}

bool Connection::dispatch() {
  auto* const display = display_.get();
  flush();
  while (wl_display_prepare_read(display) != 0) {
    if (wl_display_dispatch_pending(display) < 0) return false;
  }
  return wl_display_read_events(display) >= 0 && wl_display_dispatch_pending(display) >= 0;
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
