#pragma once

#include <X11/Xlib.h>

#include <array>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kivra::x11 {

/// A key that types a character, with Shift or without.
struct CharacterKey {
  std::uint8_t code = 0;
  bool shift = false;

  bool operator==(const CharacterKey&) const = default;
};

/// Finds a key for any character: one of the layout in use, or a key code that no key uses, bound
/// to the character for the time. Applications read a changed map late, when the key has long
/// arrived, so a binding stays until its key code is needed again, the longest unused one first.
class CharacterKeys {
 public:
  explicit CharacterKeys(Display* display) : display_(display) {}

  /// Takes the keyboard map in anew.
  void readMap();

  /// The key that types the scalar while the group is in effect; nothing when the map has no free
  /// key code at all.
  std::optional<CharacterKey> find(std::uint32_t scalar, std::uint32_t group);

  /// Whether a key code has been bound since the last call.
  bool takeHasBound() { return std::exchange(hasBound_, false); }

  /// Whether the program bound this key code itself.
  bool isSpare(std::uint8_t code) const;

  /// Gives the bound key codes back.
  void unbind();

 private:
  struct Spare {
    std::uint8_t code = 0;
    std::uint32_t scalar = 0;  // 0: not bound
    std::uint64_t lastUse = 0;
  };

  void bind(Spare& spare, std::uint32_t scalar);

  static constexpr std::size_t maxGroups = 4;

  Display* display_;
  std::array<std::unordered_map<std::uint32_t, CharacterKey>, maxGroups> keys_;
  std::vector<Spare> spares_;
  std::uint64_t uses_ = 0;
  bool hasBound_ = false;
};

}  // namespace kivra::x11
