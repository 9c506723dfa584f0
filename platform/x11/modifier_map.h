#pragma once

#include <X11/Xlib.h>

#include <array>
#include <cstdint>
#include <vector>

#include "platform/events.h"

namespace kivra::x11 {

/// Which keys are modifiers and which bits of the X modifier state they set, as the keyboard map
/// says.
class ModifierMap {
 public:
  ModifierMap() = default;
  explicit ModifierMap(Display* display);

  /// The event flag that the key sets while it is held, 0 for an ordinary key. Alt and the third
  /// level shift are Option, Super is Command, Menu and a reported Fn key are Fn.
  std::uint64_t flag(std::uint8_t code) const { return flags_[code]; }

  /// Whether the key changes modifiers: the above and the lock keys.
  bool isModifier(std::uint8_t code) const { return isModifier_[code]; }

  /// The X modifier bits of Shift, Control, Option and Command flags.
  unsigned int mask(std::uint64_t flags) const;

  /// Every combination of Caps Lock, Num Lock and Scroll Lock, the empty one included.
  std::vector<unsigned int> lockCombinations() const;

  /// A key that holds the modifier down, 0 when the map has none.
  std::uint8_t shiftKey() const { return shiftKey_; }
  std::uint8_t controlKey() const { return controlKey_; }
  std::uint8_t altKey() const { return altKey_; }
  /// The key that toggles Caps Lock, 0 when the map has none.
  std::uint8_t capsLockKey() const { return capsLockKey_; }

 private:
  void addKey(std::uint8_t code, KeySym symbol, unsigned int mask);

  std::array<std::uint64_t, 256> flags_{};
  std::array<bool, 256> isModifier_{};
  unsigned int altMask_ = 0;
  unsigned int superMask_ = 0;
  unsigned int numLockMask_ = 0;
  unsigned int scrollLockMask_ = 0;
  std::uint8_t shiftKey_ = 0;
  std::uint8_t controlKey_ = 0;
  std::uint8_t altKey_ = 0;
  std::uint8_t capsLockKey_ = 0;
};

}  // namespace kivra::x11
