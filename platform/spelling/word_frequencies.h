#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/spelling/letter_code.h"

namespace kivra {

/// What the frequency lists know about one word, whatever its case.
struct WordFrequency {
  /// 4 * ln(1 + occurrences in 100 million words), rounded, 1 to 63.
  std::uint8_t level = 0;
  /// The cases in which lists show the word: bit 0 lower, 1 capitalised, 2 upper, 3 mixed; bit 4:
  /// the level was counted, not guessed from the word's mere presence in a list; bit 5: the same
  /// keys give a far more common word of the other language.
  std::uint8_t seen = 0;

  bool operator==(const WordFrequency&) const = default;
};

inline constexpr std::uint8_t seenLower = 1;
inline constexpr std::uint8_t seenCapitalised = 2;
inline constexpr std::uint8_t seenUpper = 4;
inline constexpr std::uint8_t seenMixed = 8;
inline constexpr std::uint8_t seenCounted = 16;
inline constexpr std::uint8_t seenShadowed = 32;

/// The bit of `seen` for a case.
constexpr std::uint8_t seenIn(LetterCase letterCase) {
  return static_cast<std::uint8_t>(1U << static_cast<unsigned>(letterCase));
}

/// Word frequencies of one language by encoded word (see letter_code.h).
using WordFrequencies = std::unordered_map<std::string, WordFrequency>;

/// First line of a frequency file. Each further line is a word, its level and its `seen` bits, with
/// tabs between.
inline constexpr std::string_view frequencyFileHeader = "kivra frequencies 1";

/// Reads the text of a frequency file. A file with another first line is empty; lines that make no
/// sense are skipped.
WordFrequencies readFrequencies(std::string_view text);

}  // namespace kivra
