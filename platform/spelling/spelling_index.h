#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/spelling/letter_code.h"
#include "platform/spelling/letter_habits.h"
#include "platform/spelling/word_automaton.h"
#include "platform/spelling/word_frequencies.h"

namespace kivra {

/// What the index knows about one word.
struct IndexedWord {
  bool inDictionary = false;
  /// The case in which the dictionary writes it; the plainest one when there are several.
  LetterCase dictionaryCase = LetterCase::lower;
  WordFrequency frequency;

  bool operator==(const IndexedWord&) const = default;
};

/// All forms of one dictionary and all words of its frequency list, in one file-like block of
/// memory that is read in place: an automaton, two bytes a word, and the letter habits of the
/// forms.
class SpellingIndex {
 public:
  /// Calls its argument with every dictionary form in turn, and whether the form is allowed.
  using FormSource = std::function<void(const std::function<void(std::u32string_view, bool)>&)>;

  /// The block for a dictionary's forms and a frequency list. `identity` is kept in it, to tell
  /// whether it was made from the texts at hand. Takes about a second for a million forms.
  static std::string build(const FormSource& forms, const WordFrequencies& frequencies,
                           std::uint64_t identity);

  /// The index over a block, or null when the block is damaged or has another identity.
  static std::unique_ptr<SpellingIndex> fromBlock(std::string block, std::uint64_t identity);

  /// The index over a file, mapped into memory; null when the file cannot be read, is damaged or
  /// has another identity.
  static std::unique_ptr<SpellingIndex> fromFile(const std::filesystem::path& file,
                                                 std::uint64_t identity);

  ~SpellingIndex();
  SpellingIndex(const SpellingIndex&) = delete;
  SpellingIndex& operator=(const SpellingIndex&) = delete;

  /// What is known about an encoded word; nothing when neither dictionary nor list has it.
  [[nodiscard]] std::optional<IndexedWord> find(std::string_view word) const;

  /// What is known about the word with a number that the automaton gave.
  [[nodiscard]] IndexedWord word(std::uint32_t number) const;

  /// False for an index built without a frequency list.
  [[nodiscard]] bool hasFrequencies() const { return hasFrequencies_; }

  [[nodiscard]] const WordAutomaton& automaton() const { return automaton_; }

  [[nodiscard]] const LetterHabits& habits() const { return habits_; }

 private:
  struct Mapping;

  SpellingIndex();
  bool attach(std::span<const char> block, std::uint64_t identity);

  std::string owned_;
  std::unique_ptr<Mapping> mapping_;
  WordAutomaton automaton_;
  std::span<const std::uint8_t> levels_;
  std::span<const std::uint8_t> flags_;
  LetterHabits habits_;
  bool hasFrequencies_ = false;
};

}  // namespace kivra
