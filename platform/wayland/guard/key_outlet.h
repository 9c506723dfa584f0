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
  /// The map that keys have from now on. Forgets the modifiers.
  virtual void setMap(const std::string& text) = 0;
};

}  // namespace kivra::wayland
