#pragma once

#include <cstddef>
#include <string>

#include "layout/keycode_map.h"
#include "layout/keystroke.h"

namespace kivra {

/// What a word's keys give in one layout: the word itself, and the marks before and after it that
/// stand on keys of letters of the other layout.
struct WordReading {
  std::size_t first = 0;  ///< keystrokes before the word
  std::size_t count = 0;  ///< keystrokes of the word
  std::string before{};
  std::string core{};
  std::string after{};

  /// All of the keys taken as the word.
  static WordReading whole(const Word& word, const Layout& layout);

  /// The keys from the first that gives a letter or a digit to the last one taken as the word.
  static WordReading withoutMarks(const Word& word, const Layout& layout);

  /// Whether the word is all letters but for at most one apostrophe inside an English one.
  bool isWord(const Layout& layout) const;
};

}  // namespace kivra
