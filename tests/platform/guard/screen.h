#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "platform/guard/process/seat_keys.h"

struct xkb_keymap;

namespace kivra::guard {

/// A keyboard map with the layouts us and ru, and what its keys type.
class Layouts {
 public:
  /// Options of XKB rules, such as "grp:caps_toggle".
  explicit Layouts(const std::string& options = "");

  const KeyMap& keyMap() const { return keyMap_; }
  /// The character of a key with Shift or without; 0 for none.
  char32_t character(std::uint16_t key, std::uint32_t group, bool shift) const;
  /// The plain us and ru map.
  static const Layouts& plain();
  /// The map itself, for the caller to release.
  static xkb_keymap* newKeymap(const std::string& options = "");

 private:
  KeyMap keyMap_;
  std::map<std::uint16_t, std::array<std::array<char32_t, 2>, 2>> characters_;
};

/// What applications make of the keys that go on to them: a text that only letters, Space, Return
/// and BackSpace change, the locks and the group.
class Screen {
 public:
  explicit Screen(const Layouts& layouts) : layouts_(&layouts) {}

  void press(std::uint16_t key);
  void repeat(std::uint16_t key);
  void release(std::uint16_t key);
  void selectGroup(std::uint32_t group) { group_ = group; }
  void type(char32_t character) { text_ += character; }

  /// What is typed from now on goes to another window.
  void moveFocus();
  /// Somebody lets go of the keys that no hand holds.
  void letGo(const KeySet& held) { down_ &= held; }

  std::string text() const;
  const std::u32string& characters() const { return text_; }
  std::uint32_t group() const { return group_; }
  bool isCapsOn() const { return isCapsOn_; }
  const KeySet& down() const { return down_; }
  /// Keys with Control, Alt or Super, as "C-30 ".
  const std::string& chords() const { return chords_; }
  /// How often Alt or Super was tapped alone, which opens a menu.
  int menus() const { return menus_; }
  /// Keys pressed that were down, let go of that were up, and BackSpaces beyond a window's text.
  int faults() const { return faults_; }

  template <class Digest>
  void addTo(Digest& digest) const {
    for (const auto character : text_) digest.add(character);
    digest.add(text_.size()).add(windowStart_).add(group_).add(lone_).add(faults_);
    digest.add(isCapsOn_).add(capsEnds_).add(down_);
  }

 private:
  std::uint64_t flags() const;
  void act(std::uint16_t key);

  const Layouts* layouts_;
  std::u32string text_;  // of all windows, one behind the other
  std::size_t windowStart_ = 0;
  std::uint32_t group_ = 0;
  bool isCapsOn_ = false;
  bool capsEnds_ = false;  // with the release of Caps Lock
  std::uint16_t lone_ = 0;
  KeySet down_;
  std::string chords_;
  int menus_ = 0;
  int faults_ = 0;
};

}  // namespace kivra::guard
