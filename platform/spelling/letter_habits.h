#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kivra {

/// Which letters follow which in the words of a language: how likely a string is to be a word of it
/// that the dictionary lacks (a name, a term, an inflected form).
class LetterHabits {
 public:
  /// Letters that are told apart: 33 of them, the signs within a word as one, the word's edge.
  static constexpr std::size_t letters = 35;
  /// Bytes of a table: the cost of each letter behind each pair of letters.
  static constexpr std::size_t tableSize = letters * letters * letters;

  LetterHabits() = default;

  /// Reads `table`, of `tableSize` bytes, in place; it must outlive this object.
  explicit LetterHabits(std::span<const std::uint8_t> table) : table_(table) {}

  /// The cost of an encoded word (see letter_code.h) as a row of letters, in quarters of a nat: the
  /// higher, the less it looks like a word. 0 without a table.
  [[nodiscard]] int cost(std::string_view word) const;

 private:
  std::span<const std::uint8_t> table_;
};

/// Counts the letters of words, each word once.
class LetterHabitsBuilder {
 public:
  LetterHabitsBuilder() : triples_(LetterHabits::tableSize) {}

  void add(std::string_view word);

  /// The table of costs, `LetterHabits::tableSize` bytes.
  [[nodiscard]] std::string finish() const;

 private:
  std::vector<std::uint32_t> triples_;
};

}  // namespace kivra
