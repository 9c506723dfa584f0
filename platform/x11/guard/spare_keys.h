#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace kivra::x11 {

/// Key codes that no key uses, bound to characters that no layout has. Applications read a changed
/// map late, when the key has long arrived, so a binding stays until its key code is needed again,
/// the longest unused one first.
class SpareKeys {
 public:
  explicit SpareKeys(Display* display) : display_(display) {}

  /// The keyboard map is a new one: nothing is bound in it.
  void readMap();

  /// A key code that types the scalar, bound to it if need be; nothing when the map has no free
  /// one.
  std::optional<std::uint8_t> find(std::uint32_t scalar);

  /// Whether the codes from `first` on are all such keys.
  bool areSpare(int first, int count) const;

  /// Gives the bound key codes back.
  void unbind();

 private:
  struct Spare {
    std::uint8_t code = 0;
    std::uint32_t scalar = 0;  // 0: not bound
    std::uint64_t lastUse = 0;
  };

  void bind(Spare& spare, std::uint32_t scalar);

  Display* display_;
  std::vector<Spare> spares_;
  std::uint64_t uses_ = 0;
};

}  // namespace kivra::x11
