#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace kivra {

/// Virtual key codes against Linux input event codes (linux/input-event-codes.h).
std::optional<std::uint16_t> evdevCode(std::uint16_t virtualKey);
std::optional<std::uint16_t> virtualKey(std::uint16_t evdevCode);

/// XKB key codes, which X has too, are Linux input event codes plus this.
inline constexpr std::uint16_t xkbOffset = 8;

constexpr std::uint32_t xkbCode(std::uint32_t evdevCode) { return evdevCode + xkbOffset; }

/// The code is not below `xkbOffset`.
constexpr std::uint16_t evdevOfXkb(std::size_t code) {
  return static_cast<std::uint16_t>(code - xkbOffset);
}

}  // namespace kivra
