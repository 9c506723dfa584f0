#pragma once

#include <cstdint>
#include <vector>

namespace kivra {

/// One typed physical key.
struct Keystroke {
  std::uint16_t keyCode = 0;
  bool shift = false;

  bool operator==(const Keystroke&) const = default;
};

/// A word as the keys that typed it.
using Word = std::vector<Keystroke>;

}  // namespace kivra
