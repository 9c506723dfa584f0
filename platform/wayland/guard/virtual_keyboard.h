#pragma once

#include <cstdint>
#include <string>

#include "platform/wayland/client/connection.h"
#include "platform/wayland/guard/key_outlet.h"
#include "virtual-keyboard-unstable-v1-client-protocol.h"

namespace kivra::wayland {

/// A keyboard of the seat that programs type on.
class VirtualKeyboard : public KeyOutlet {
 public:
  /// Throws std::runtime_error when the compositor has none.
  VirtualKeyboard(Connection& connection, wl_seat* seat);

  void key(std::uint16_t evdev, bool isDown) override;
  void modifiers(const Modifiers& modifiers) override;
  bool setMap(const std::string& text) override;

 private:
  Connection& connection_;
  Owned<zwp_virtual_keyboard_v1> keyboard_;
};

}  // namespace kivra::wayland
