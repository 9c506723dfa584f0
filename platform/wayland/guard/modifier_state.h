#pragma once

#include <cstdint>
#include <memory>

#include "platform/wayland/client/compiled_map.h"

namespace kivra::wayland {

/// Modifiers and layout as they go over the wire: masks of the key map's modifiers, and the group.
struct Modifiers {
  std::uint32_t depressed = 0;
  std::uint32_t latched = 0;
  std::uint32_t locked = 0;
  std::uint32_t group = 0;

  bool operator==(const Modifiers&) const = default;
};

/// What keys have made of modifiers, locks and layout.
class ModifierState {
 public:
  explicit ModifierState(const CompiledMap& map)
      : state_(xkb_state_new(map.get()), xkb_state_unref) {}

  void key(std::uint16_t evdev, bool isDown);
  void set(const Modifiers& modifiers);
  Modifiers modifiers() const;

 private:
  std::unique_ptr<xkb_state, void (*)(xkb_state*)> state_;
};

}  // namespace kivra::wayland
