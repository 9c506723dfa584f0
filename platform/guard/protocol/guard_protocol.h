#pragma once

#include <cstdint>
#include <type_traits>

namespace kivra::guard {

// What the program and its keyboard guard say to each other: frames over a SOCK_SEQPACKET pair. A
// frame is a header and one or more plain records; both ends run on one machine. Answers of yes or
// no are a byte, 0 for no: what comes from outside need not make a bool.

/// Both ends say it first. After an upgrade they may be of two builds. One more with every change
/// in this file.
inline constexpr std::uint32_t protocolVersion = 2;

enum class FrameKind : std::uint32_t {
  hello = 1,       ///< Hello; the first frame of either end, in every version
  report = 2,      ///< Report
  order = 3,       ///< Order
  postedKeys = 4,  ///< Order, then PostedKey records
  chords = 5,      ///< Order, then Chord records
};

struct FrameHeader {
  FrameKind kind = FrameKind::hello;
  std::uint32_t length = 0;  ///< bytes that follow
};

struct Hello {
  std::uint32_t version = protocolVersion;
};

/// What the guard reports.
enum class ReportKind : std::uint8_t {
  ready,        ///< everything is set up
  unavailable,  ///< the display lacks something; the guard ends
  keyDown,
  flagsChanged,
  leftMouseDown,
  rightMouseDown,
  wordBroken,    ///< the text before the cursor is no longer the word that was typed
  timedOut,      ///< no verdict in time: the key has passed and the tap is off
  refused,       ///< what was decided at event `number` came too late and has not been typed
  noKeyboard,    ///< there is no keyboard that could be held
  keyboardBusy,  ///< another program holds a keyboard
};

struct Report {
  std::uint32_t number = 0;  ///< of the event, counting from 1
  ReportKind kind = ReportKind::ready;
  std::uint8_t awaitsVerdict = 0;  ///< the key goes on only after the verdict
  std::uint16_t keyCode = 0;       ///< virtual key code
  std::uint32_t group = 0;         ///< the XKB group in effect
  std::uint64_t flags = 0;
};

/// What the program asks of the guard. `verdict` and `post` come with posted keys, `setConsumable`
/// with chords.
enum class OrderKind : std::uint8_t { verdict, post, setConsumable, enable, disable };

struct Order {
  OrderKind kind = OrderKind::post;
  std::uint8_t drop = 0;  ///< of a verdict: the key is consumed
  std::uint8_t more = 0;  ///< the list goes on in the next order
  /// Of a verdict, the event decided of. Of a post, the last event that its sender had seen, beyond
  /// which no key may have gone on; 0 for a post that fits anywhere.
  std::uint32_t number = 0;
};

struct PostedKey {
  enum class Kind : std::uint8_t { key, character, selectGroup, pause };

  Kind kind = Kind::key;
  std::uint8_t down = 1;
  std::uint16_t keyCode = 0;  ///< virtual key code
  std::uint32_t value = 0;    ///< the character's scalar, the group, or the pause in milliseconds
  std::uint64_t flags = 0;

  bool operator==(const PostedKey&) const = default;
};

struct Chord {
  std::uint16_t keyCode = 0;  ///< virtual key code
  std::uint64_t flags = 0;    ///< exactly these of Shift, Control, Option and Command

  bool operator==(const Chord&) const = default;
};

/// Records in one frame; longer lists are split.
inline constexpr std::size_t maxRecords = 512;

static_assert(std::is_trivially_copyable_v<Report> && std::is_trivially_copyable_v<Order> &&
              std::is_trivially_copyable_v<PostedKey> && std::is_trivially_copyable_v<Chord>);

}  // namespace kivra::guard
