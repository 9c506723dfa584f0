#pragma once

#include <cstdint>
#include <string>

namespace kivra {

/// Kinds of input events, with the numbers of the platform's event types.
enum class EventType : std::uint32_t {
  leftMouseDown = 1,
  rightMouseDown = 3,
  keyDown = 10,
  flagsChanged = 12,
  tapDisabledByTimeout = 0xFFFFFFFE,
  tapDisabledByUserInput = 0xFFFFFFFF,
};

/// Bits of an event's modifier flags.
namespace event_flags {
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t option = 0x80000;
inline constexpr std::uint64_t command = 0x100000;
inline constexpr std::uint64_t fn = 0x800000;
}  // namespace event_flags

/// Virtual key codes: the physical keys that the program names, whatever layout is selected.
namespace key_codes {
inline constexpr std::uint16_t a = 0;
inline constexpr std::uint16_t z = 6;
inline constexpr std::uint16_t x = 7;
inline constexpr std::uint16_t c = 8;
inline constexpr std::uint16_t v = 9;
inline constexpr std::uint16_t returnKey = 36;
inline constexpr std::uint16_t tab = 48;
inline constexpr std::uint16_t space = 49;
inline constexpr std::uint16_t deleteKey = 51;
inline constexpr std::uint16_t escape = 53;
inline constexpr std::uint16_t leftShift = 56;
inline constexpr std::uint16_t rightShift = 60;
inline constexpr std::uint16_t keypadEnter = 76;
inline constexpr std::uint16_t pause = 113;
inline constexpr std::uint16_t leftArrow = 123;
inline constexpr std::uint16_t rightArrow = 124;
inline constexpr std::uint16_t downArrow = 125;
inline constexpr std::uint16_t upArrow = 126;
}  // namespace key_codes

/// An event of the login session as a tap sees it.
struct Event {
  EventType type = EventType::keyDown;
  std::uint16_t keyCode = 0;  ///< of the key, or of the modifier key that changed
  std::uint64_t flags = 0;    ///< the modifiers held; after the change for `flagsChanged`
  std::int64_t userData = 0;  ///< the user-data field (field 42), 0 for the user's own events

  bool operator==(const Event&) const = default;
};

/// A keyboard event made by the program, to be posted.
struct KeyboardEvent {
  std::uint16_t keyCode = 0;
  bool down = true;
  std::uint64_t flags = 0;
  std::int64_t userData = 0;
  std::string unicodeString;  ///< when not empty, the text that the event types instead of its key

  bool operator==(const KeyboardEvent&) const = default;
};

}  // namespace kivra
