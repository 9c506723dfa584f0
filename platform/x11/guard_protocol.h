#pragma once

#include <cstdint>
#include <type_traits>

namespace kivra::x11 {

// What the program and its keyboard guard say to each other over a SOCK_SEQPACKET pair, one message
// a packet. Both ends are one build on one machine, so plain records will do.

/// What the guard reports.
enum class ReportKind : std::uint8_t {
  ready,        ///< everything is set up; the first message
  unavailable,  ///< the X server lacks something; the guard ends
  keyDown,
  flagsChanged,
  leftMouseDown,
  rightMouseDown,
  wordBroken,  ///< the text before the cursor is no longer the word that was typed
  timedOut,    ///< no verdict in time: the key has passed and the tap is off
  keyTaken,    ///< another program holds this key, which therefore is left to it
  pong,
};

struct Report {
  std::uint32_t number = 0;  ///< of the event, counting from 1
  ReportKind kind = ReportKind::ready;
  bool awaitsVerdict = false;  ///< the keyboard is frozen until the verdict comes
  std::uint16_t keyCode = 0;   ///< virtual key code
  std::uint32_t group = 0;     ///< the XKB group in effect
  std::uint64_t flags = 0;
  std::int64_t userData = 0;
};

/// What the program asks of the guard. `verdict` and `post` are followed by posted keys,
/// `setConsumable` by chords.
enum class OrderKind : std::uint8_t { verdict, post, setConsumable, enable, disable, ping };

struct Order {
  OrderKind kind = OrderKind::ping;
  bool drop = false;         ///< of a verdict: the key is consumed
  bool more = false;         ///< the list goes on in the next order
  std::uint32_t number = 0;  ///< the event in whose callback this was decided, 0 for none
  std::uint32_t count = 0;   ///< records that follow
};

struct PostedKey {
  enum class Kind : std::uint8_t { key, character, selectGroup };

  Kind kind = Kind::key;
  bool down = true;
  std::uint16_t keyCode = 0;  ///< virtual key code
  std::uint32_t value = 0;    ///< the character's scalar, or the group
  std::uint64_t flags = 0;
  std::int64_t userData = 0;

  bool operator==(const PostedKey&) const = default;
};

struct Chord {
  std::uint16_t keyCode = 0;  ///< virtual key code
  std::uint64_t flags = 0;    ///< exactly these of Shift, Control, Option and Command

  bool operator==(const Chord&) const = default;
};

/// Records in one order; longer lists are split.
inline constexpr std::uint32_t maxRecords = 512;

static_assert(std::is_trivially_copyable_v<Report> && std::is_trivially_copyable_v<Order> &&
              std::is_trivially_copyable_v<PostedKey> && std::is_trivially_copyable_v<Chord>);

}  // namespace kivra::x11
