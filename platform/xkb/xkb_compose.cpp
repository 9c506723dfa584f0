#include "platform/xkb/xkb_compose.h"

#include <xkbcommon/xkbcommon-compose.h>

#include <array>

namespace kivra {

namespace {

struct ReleaseComposeState {
  void operator()(xkb_compose_state* state) const { xkb_compose_state_unref(state); }
};
using ComposeState = std::unique_ptr<xkb_compose_state, ReleaseComposeState>;

ComposeState newState(xkb_compose_table* table) {
  return ComposeState(table == nullptr ? nullptr
                                       : xkb_compose_state_new(table, XKB_COMPOSE_STATE_NO_FLAGS));
}

}  // namespace

XkbCompose::~XkbCompose() {
  xkb_compose_table_unref(table_);
  xkb_context_unref(context_);
}

bool XkbCompose::isDead(std::uint32_t symbol) {
  const auto state = newState(table());
  if (!state) return false;
  xkb_compose_state_feed(state.get(), symbol);
  return xkb_compose_state_get_status(state.get()) == XKB_COMPOSE_COMPOSING;
}

std::optional<std::string> XkbCompose::combined(std::uint32_t dead, std::uint32_t next) {
  const auto state = newState(table());
  if (!state) return std::nullopt;
  xkb_compose_state_feed(state.get(), dead);
  xkb_compose_state_feed(state.get(), next);
  if (xkb_compose_state_get_status(state.get()) != XKB_COMPOSE_COMPOSED) return std::nullopt;
  std::array<char, 64> bytes{};
  const auto length = xkb_compose_state_get_utf8(state.get(), bytes.data(), bytes.size());
  if (length <= 0 || static_cast<std::size_t>(length) >= bytes.size()) return std::nullopt;
  return std::string(bytes.data(), static_cast<std::size_t>(length));
}

xkb_compose_table* XkbCompose::table() {
  if (!isLoaded_) {
    isLoaded_ = true;
    context_ = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    table_ = context_ == nullptr ? nullptr
                                 : xkb_compose_table_new_from_locale(context_, "en_US.UTF-8",
                                                                     XKB_COMPOSE_COMPILE_NO_FLAGS);
  }
  return table_;
}

}  // namespace kivra
