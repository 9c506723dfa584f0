#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/wayland/client/compiled_map.h"

namespace kivra::wayland {

/// Keys that the map names and no keyboard has, bound to characters that no layout has. A binding
/// stays until its key is needed again, the longest unused one first: applications read the whole
/// map anew with each change.
class SpareKeys {
 public:
  SpareKeys() = default;
  explicit SpareKeys(xkb_keymap* map);

  /// Binds a key to the scalar; false when it was bound already, or the map has no such key.
  bool bind(std::uint32_t scalar);
  /// The key, as an evdev code, that the scalar is bound to.
  std::optional<std::uint16_t> find(std::uint32_t scalar) const;

  /// The map with the characters on their keys.
  std::string extended(const std::string& mapText) const;

 private:
  struct Spare {
    std::uint16_t evdev = 0;
    std::string name;
    std::uint32_t scalar = 0;  // 0: not bound
    std::uint64_t lastUse = 0;
  };

  std::vector<Spare> spares_;
  std::uint64_t uses_ = 0;
};

}  // namespace kivra::wayland
