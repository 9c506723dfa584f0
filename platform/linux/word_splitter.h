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
/// letters belongs to the word; a piece with a digit in it ("mp3", "2-й") is no word, nor
/// is an initial ("T."). A grave accent
/// or a tilde that touches a word is kept as part of it: nobody ends an English word with one, but
/// it is the key of "ё".
std::vector<FoundWord> findWords(std::u32string_view text);

}  // namespace kivra
