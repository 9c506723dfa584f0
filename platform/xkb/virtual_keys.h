#pragma once

#include <cstdint>
#include <optional>

namespace kivra {

/// Virtual key codes against Linux input event codes (linux/input-event-codes.h). XKB key codes are
/// the latter plus 8.
std::optional<std::uint16_t> evdevCode(std::uint16_t virtualKey);
std::optional<std::uint16_t> virtualKey(std::uint16_t evdevCode);

inline constexpr std::uint16_t xkbOffset = 8;

}  // namespace kivra
