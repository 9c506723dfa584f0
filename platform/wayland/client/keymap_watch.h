#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/wayland/client/connection.h"

namespace kivra::wayland {

/// The keyboard map that the compositor gives its clients. Known once events have been read.
class KeymapWatch {
 public:
  /// `changed` is called when there is another map. Throws std::runtime_error without a seat.
  KeymapWatch(Connection& connection, std::function<void()> changed);

  /// In the format of xkbcommon; empty until it is known. Kept when the seat's last keyboard goes:
  /// another will have the same.
  const std::string& text() const { return text_; }
  wl_seat* seat() const { return seat_.get(); }

 private:
  void takeCapabilities(std::uint32_t capabilities);
  void takeMap(std::uint32_t format, std::int32_t fd, std::uint32_t size);

  std::function<void()> changed_;
  Owned<wl_seat> seat_;
  Owned<wl_keyboard> keyboard_{nullptr, wl_keyboard_destroy};
  std::string text_;
};

}  // namespace kivra::wayland
