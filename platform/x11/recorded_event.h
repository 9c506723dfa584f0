#pragma once

#include <cstdint>

namespace kivra::x11 {

/// An input event as the server took it in, whether or not it has been delivered yet.
struct RecordedEvent {
  enum class Kind : std::uint8_t { keyDown, keyUp, buttonDown };

  Kind kind = Kind::keyDown;
  std::uint8_t code = 0;      ///< X key code or button
  bool isOwn = false;         ///< posted by this program
  std::int64_t userData = 0;  ///< of an own event
  std::uint32_t number = 0;   ///< of the report that told of it, 0 before

  bool isKey() const { return kind != Kind::buttonDown; }
};

}  // namespace kivra::x11
