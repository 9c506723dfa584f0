#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kivra {

/// A range of a string in UTF-16 code units.
struct TextRange {
  std::size_t location = 0;
  std::size_t length = 0;

  bool operator==(const TextRange&) const = default;
};

/// Spelling of words, offline. All operations are called on the main thread and answer at once;
/// strings are UTF-8. A language that the checker does not offer has no misspellings and no
/// corrections.
class SpellChecker {
 public:
  virtual ~SpellChecker() = default;

  /// Names of the languages that can be checked now, in the checker's own order ("ru_RU", "en_US");
  /// a language whose dictionary is still being loaded is not offered yet.
  virtual std::vector<std::string> availableLanguages() = 0;

  /// A number for one document of the caller's, never given out twice by this checker.
  virtual int uniqueSpellDocumentTag() = 0;

  /// The range of the first misspelled word at or after `startingAt` (UTF-16 code units), without
  /// wrapping around; nothing when there is none.
  virtual std::optional<TextRange> checkSpellingOfString(std::string_view string,
                                                         std::size_t startingAt,
                                                         std::string_view language, int tag) = 0;

  /// The one correction for the word at `range`, or nothing rather than a poor one.
  virtual std::optional<std::string> correctionForWordRange(TextRange range,
                                                            std::string_view string,
                                                            std::string_view language, int tag) = 0;
};

}  // namespace kivra
