#pragma once

#include "layout/keystroke.h"

namespace kivra {

/// A finished word with the key that ended it. Shift counts only for a mark of punctuation; Space
/// and its like are always typed again without.
struct HistoryEntry {
  Word word;
  Keystroke trigger;

  bool operator==(const HistoryEntry&) const = default;
};

}  // namespace kivra
