#include "platform/wayland/client/toplevel_watch.h"

#include <algorithm>
#include <cstdint>
#include <span>

#include "platform/wayland/client/calls.h"

namespace kivra::wayland {

ToplevelWatch::ToplevelWatch(Connection& connection)
    : manager_(connection.bind<zwlr_foreign_toplevel_manager_v1>(
                   zwlr_foreign_toplevel_manager_v1_interface),
               zwlr_foreign_toplevel_manager_v1_destroy) {
  static constexpr zwlr_foreign_toplevel_manager_v1_listener listener = {
      .toplevel = Calls<&ToplevelWatch::add>{}, .finished = Calls<&ToplevelWatch::finish>{}};
  zwlr_foreign_toplevel_manager_v1_add_listener(manager_.get(), &listener, this);
}

void ToplevelWatch::add(zwlr_foreign_toplevel_handle_v1* handle) {
  static constexpr zwlr_foreign_toplevel_handle_v1_listener listener = {
      .title = Ignores{},
      .app_id = Calls<&Toplevel::readApplication>{},
      .output_enter = Ignores{},
      .output_leave = Ignores{},
      .state = Calls<&Toplevel::readState>{},
      .done = Calls<&Toplevel::done>{},
      .closed = Calls<&Toplevel::closed>{},
      .parent = Ignores{}};
  auto& toplevel = toplevels_.emplace_back(
      Toplevel{.watch = this, .handle = {handle, zwlr_foreign_toplevel_handle_v1_destroy}});
  zwlr_foreign_toplevel_handle_v1_add_listener(handle, &listener, &toplevel);
}

void ToplevelWatch::Toplevel::readState(wl_array* states) {
  const std::span words(static_cast<const std::uint32_t*>(states->data),
                        states->size / sizeof(std::uint32_t));
  isActive =
      std::ranges::find(words, std::uint32_t{ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED}) !=
      words.end();
}

std::optional<std::string> ToplevelWatch::activeApplication() const {
  return active_ == nullptr ? std::nullopt : std::optional(active_->application);
}

void ToplevelWatch::activateLast(std::string_view application, wl_seat* seat) const {
  const auto found = std::find_if(
      toplevels_.rbegin(), toplevels_.rend(),
      [application](const Toplevel& toplevel) { return toplevel.application == application; });
  if (found == toplevels_.rend()) return;
  zwlr_foreign_toplevel_handle_v1_activate(found->handle.get(), seat);
}

void ToplevelWatch::remove(const Toplevel* toplevel) {
  toplevels_.remove_if([toplevel](const Toplevel& other) { return &other == toplevel; });
  update();
}

void ToplevelWatch::finish() {
  toplevels_.clear();
  update();
}

void ToplevelWatch::update() {
  const auto active = std::ranges::find_if(toplevels_, &Toplevel::isActive);
  const auto* const now = active == toplevels_.end() ? nullptr : &*active;
  if (std::exchange(active_, now) != now) hasMoved_ = true;
}

}  // namespace kivra::wayland
