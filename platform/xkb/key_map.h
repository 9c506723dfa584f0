#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/events.h"

struct xkb_keymap;

namespace kivra {

/// A key that types a character, with Shift or without.
struct CharacterKey {
  std::uint16_t evdev = 0;
  bool shift = false;
  bool isCased = false;  ///< a letter, which Caps Lock turns into its other case

  bool operator==(const CharacterKey&) const = default;
};

/// What the keys of a session's keyboard map are: modifiers, locks, layout keys, characters. Keys
/// are Linux input event codes below 248, which is as far as X key codes go. Knows no display.
class KeyMap {
 public:
  static constexpr std::uint16_t keyLimit = 248;

  /// A map without keys.
  KeyMap() = default;
  explicit KeyMap(xkb_keymap* keymap);

  /// The event flag that the key sets while it is held, 0 for an ordinary key. Alt and the third
  /// and fifth level shifts are Option, Super is Command, Menu and a reported Fn key are Fn.
  std::uint64_t flag(std::uint16_t key) const { return key < keyLimit ? keys_[key].flag : 0; }

  /// Whether the key, pressed while these flags are held, changes modifiers, locks or the layout
  /// and types nothing.
  bool isModifier(std::uint16_t key, std::uint64_t flags) const {
    return key < keyLimit && (keys_[key].isModifier ||
                              (keys_[key].layoutFlags != 0 && keys_[key].layoutFlags == flags));
  }

  /// Whether the key, with some modifiers, changes locks or the layout.
  bool mayChangeState(std::uint16_t key) const {
    return key < keyLimit && (keys_[key].isModifier || keys_[key].layoutFlags != 0);
  }

  /// Whether the key turns Caps Lock, Num Lock or another lock on and off.
  bool isLock(std::uint16_t key) const { return key < keyLimit && keys_[key].isLock; }

  /// A key that holds the modifier down, 0 when the map has none.
  std::uint16_t shiftKey() const { return shiftKey_; }
  std::uint16_t controlKey() const { return controlKey_; }
  std::uint16_t altKey() const { return altKey_; }

  /// A key that types nothing and that no keyboard has, 0 when the map has none.
  std::uint16_t emptyKey() const { return emptyKey_; }

  /// The key of the main block that types the scalar in a group; nothing when none does.
  std::optional<CharacterKey> keyFor(std::uint32_t scalar, std::uint32_t group) const;

 private:
  struct Key {
    std::uint64_t flag = 0;
    bool isModifier = false;
    bool isLock = false;
    std::uint64_t layoutFlags = 0;  // with these the key chooses the layout; 0 for none
  };

  void addModifier(xkb_keymap* keymap, std::uint16_t key);
  void addLayoutChord(xkb_keymap* keymap, std::uint16_t key);
  void addCharacters(xkb_keymap* keymap, std::uint16_t key);

  std::array<Key, keyLimit> keys_{};
  std::vector<std::unordered_map<std::uint32_t, CharacterKey>> characters_;  // by group
  std::uint16_t shiftKey_ = 0;
  std::uint16_t controlKey_ = 0;
  std::uint16_t altKey_ = 0;
  std::uint16_t emptyKey_ = 0;
};

}  // namespace kivra
