#pragma once

#include <cstdint>
#include <string>

#include "platform/wayland/guard/modifier_state.h"

namespace kivra::wayland {

/// Where keys go on to the applications; everything takes effect in the order of the calls.
class KeyOutlet {
 public:
  virtual ~KeyOutlet() = default;

  virtual void key(std::uint16_t evdev, bool isDown) = 0;
  virtual void modifiers(const Modifiers& modifiers) = 0;
  /// The map that keys have from now on; the modifiers are to be sent anew. False where keys keep
  /// the map that the compositor has.
  virtual bool setMap(const std::string& text) = 0;
  /// A character that no key types, where maps cannot be set.
  virtual void commit(std::uint32_t /*scalar*/) {}
};

}  // namespace kivra::wayland
