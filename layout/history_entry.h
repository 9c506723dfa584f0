#pragma once

#include <cstdint>

#include "layout/keystroke.h"

namespace kivra {

/// A finished word with the key that ended it.
struct HistoryEntry {
  Word word;
  std::uint16_t trigger = 0;

  bool operator==(const HistoryEntry&) const = default;
};

}  // namespace kivra
