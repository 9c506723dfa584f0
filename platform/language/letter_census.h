#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kivra {

/// What a text is written with.
struct LetterCensus {
  std::size_t latin = 0;
  std::size_t cyrillic = 0;
  std::size_t han = 0;
  std::size_t kana = 0;
  std::size_t other = 0;
  std::u32string letters;             ///< in lower case, in their order
  std::vector<std::u32string> words;  ///< runs of letters and apostrophes, in lower case

  /// Invalid UTF-8 counts as no letters.
  explicit LetterCensus(std::string_view text);

  /// Letters of the words, each different word counted once.
  std::size_t lettersOfDifferentWords() const;

  std::size_t total() const { return latin + cyrillic + han + kana + other; }
  bool hasAnyOf(std::u32string_view wanted) const {
    return letters.find_first_of(wanted) != std::u32string::npos;
  }

 private:
  void count(char32_t letter);
};

}  // namespace kivra
