#pragma once

#include <string>

#include "layout/keycode_map.h"
#include "layout/keystroke.h"

namespace kivra {

/// A word at its boundary, as the steps of the decision see it.
struct FinishedWord {
  Word word;
  Keystroke trigger;   ///< the key that ended it, see HistoryEntry
  const Layout& from;  ///< the layout it was typed in
  const Layout& to;    ///< the other one
  std::string typed;   ///< the word read in `from`: what stands on the screen
};

}  // namespace kivra
