#pragma once

#include <array>
#include <bitset>
#include <cstdint>

#include "platform/guard/process/seat.h"

namespace kivra::guard {

/// Every key that a kernel knows; a key map knows the lower ones.
inline constexpr std::uint16_t keyCount = 0x300;
static_assert(KeyMap::keyLimit <= keyCount);

using KeySet = std::bitset<keyCount>;

/// Modifiers that do something when they are pressed and let go of without another key. After a
/// script they are pressed again only with the next key.
inline constexpr std::uint64_t tappedAlone =
    event_flags::option | event_flags::command | event_flags::fn;

/// What makes no lone tap of the Alt or Super that is down: a key that does nothing, tapped.
Steps tapBetween(const KeyMap& keyMap, const KeySet& down);

/// Which keys hands hold, as far as keys had their turn, and which are down at the application.
/// Everything that goes on goes through here, so that each key is pressed and let go of once.
class SeatKeys {
 public:
  explicit SeatKeys(Seat& seat) : seat_(seat) {}

  /// The key's turn has come: hands hold it now, or do so no more.
  void turn(const SeatKey& key);

  /// Goes on, unless the application has it as the hand wants it already: two keyboards have the
  /// same keys, and a script lets go of what hands hold.
  void pass(const SeatKey& key);
  /// Does not go on.
  void drop(const SeatKey& key);
  void type(const Steps& steps);

  bool isDown(std::uint16_t key) const { return down_.test(key); }
  const KeySet& down() const { return down_; }
  KeySet held() const;

  /// The flags of the modifiers that hands hold.
  std::uint64_t flags() const;

 private:
  void pressOwed(std::uint16_t key);

  Seat& seat_;
  std::array<std::uint8_t, keyCount> hands_{};  // on how many keyboards the key is held
  KeySet down_;
};

}  // namespace kivra::guard
