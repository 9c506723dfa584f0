#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spell_checker.h"

namespace kivra::quality {

/// A word's validity and its correction, as the program asks for them.
struct Oracle {
  std::function<bool(const std::string& word, bool russian)> isValid;
  std::function<std::optional<std::string>(const std::string& word, bool russian)> correction;
};

/// The oracle over a spell checker's boundary operations.
Oracle oracleOf(SpellChecker& checker);

enum class Change { none, switched, corrected };

/// What became of one typed word.
struct Outcome {
  Change change = Change::none;
  std::string text;
};

/// Decides about a word that was typed with the keys of `meant` (text of the Russian or the English
/// layout) while the layout `typedRussian` was active, as the program does at a word's end. Nothing
/// when the layout lacks a sign of it, or when the word looks like a password.
std::optional<Outcome> decide(const Oracle& oracle, std::u32string_view meant, bool meantRussian,
                              bool typedRussian);

/// Counts of one run over a list of misspellings or a text.
struct Shares {
  std::size_t words = 0;
  std::size_t right = 0;
  std::size_t wrong = 0;
  std::vector<std::string> notes;  // what went wrong, one line each

  [[nodiscard]] double rightPercent() const { return percent(right); }
  [[nodiscard]] double wrongPercent() const { return percent(wrong); }

  Shares& operator+=(const Shares& other);

 private:
  [[nodiscard]] double percent(std::size_t part) const {
    return words == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(words);
  }
};

/// The same counts for the words that the program's weights may be fitted on and for those that it
/// is judged by. Which half a word is in depends on nothing but its letters.
struct Halves {
  Shares fitting;
  Shares judging;

  [[nodiscard]] Shares both() const;
};

/// Whether the weights may be fitted on a word (for a misspelling: the word meant).
bool isForFitting(std::u32string_view word);

/// Lines "typed<TAB>meant": how many are set right and how many to something else.
Halves misspellings(const Oracle& oracle, std::string_view list, bool russian);

/// Correct text in its own layout: `wrong` counts the words corrected.
Halves correctedText(const Oracle& oracle, std::string_view text, bool russian);

/// Correct text in its own layout: `wrong` counts the words switched.
Shares switchedText(const Oracle& oracle, std::string_view text, bool russian);

/// Text typed in the other layout: of the words whose meant reading is all letters, `right` come
/// out as meant.
Shares wrongLayout(const Oracle& oracle, std::string_view text, bool russian);

}  // namespace kivra::quality
