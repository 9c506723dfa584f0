#include "platform/wayland/guard/modifier_state.h"

#include "platform/xkb/virtual_keys.h"

namespace kivra::wayland {

void ModifierState::key(std::uint16_t evdev, bool isDown) {
  xkb_state_update_key(state_.get(), xkbCode(evdev), isDown ? XKB_KEY_DOWN : XKB_KEY_UP);
}

void ModifierState::set(const Modifiers& modifiers) {
  xkb_state_update_mask(state_.get(), modifiers.depressed, modifiers.latched, modifiers.locked, 0,
                        0, modifiers.group);
}

Modifiers ModifierState::modifiers() const {
  auto* const state = state_.get();
  return {.depressed = xkb_state_serialize_mods(state, XKB_STATE_MODS_DEPRESSED),
          .latched = xkb_state_serialize_mods(state, XKB_STATE_MODS_LATCHED),
          .locked = xkb_state_serialize_mods(state, XKB_STATE_MODS_LOCKED),
          .group = xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE)};
}

}  // namespace kivra::wayland
