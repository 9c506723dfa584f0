#pragma once

#include <string>

#include "bus_client.h"
#include "platform/wayland/guard/key_outlet.h"

namespace kivra::e2e {

/// What GNOME Shell takes for a keyboard of its own: that of a remote desktop, on the session bus
/// of this process's environment. Throws std::runtime_error when the shell refuses it.
class RemoteKeyboard : public wayland::KeyOutlet {
 public:
  RemoteKeyboard();

  void key(std::uint16_t evdev, bool isDown) override;
  void modifiers(const wayland::Modifiers& /*modifiers*/) override {}
  bool setMap(const std::string& /*text*/) override { return false; }

 private:
  BusClient bus_;
  std::string session_;
};

}  // namespace kivra::e2e
