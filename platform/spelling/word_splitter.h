#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace kivra {

/// A word found in a string: its scalars, and where it lies in UTF-16 code units.
struct FoundWord {
  std::u32string_view text;
  std::size_t location = 0;
  std::size_t length = 0;
};

/// The words of a text, without the punctuation around them. An apostrophe or a hyphen between
/// letters belongs to the word; a piece with a digit in it ("mp3", "2-й") is no word, nor is an
/// initial ("T.") or a letter of "i.e.". Signs that stand where no punctuation does (a grave accent
/// at a word, a comma before it or inside) are kept as part of it: they are letters of the other
/// layout.
std::vector<FoundWord> findWords(std::u32string_view text);

}  // namespace kivra
