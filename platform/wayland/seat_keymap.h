#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/guard/display_layouts.h"
#include "platform/wayland/client/connection.h"

namespace kivra::wayland {

/// The keyboard map that the compositor gives its clients. Known once events have been read.
class SeatKeymap : public guard::DisplayLayouts {
 public:
  /// `changed` is called when there is another map. Throws std::runtime_error without a seat.
  SeatKeymap(Connection& connection, std::function<void()> changed);

  bool isConnected() const override { return !text_.empty(); }
  xkb_keymap* newKeymap() override;

  wl_seat* seat() const { return seat_.get(); }

 private:
  void takeCapabilities(std::uint32_t capabilities);
  void takeMap(std::uint32_t format, std::int32_t fd, std::uint32_t size);

  std::function<void()> changed_;
  Owned<wl_seat> seat_;
  Owned<wl_keyboard> keyboard_{nullptr, wl_keyboard_destroy};
  std::string text_;  // kept when the seat's last keyboard goes: another will have the same
};

}  // namespace kivra::wayland
