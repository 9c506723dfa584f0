#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/spell_checker.h"

namespace kivra {

/// Whether a word is one of a language, what it may have been meant to be, and whether it is no
/// word at all but a password or an identifier.
class WordValidator {
 public:
  explicit WordValidator(SpellChecker& checker)
      : checker_(checker), tag_(checker.uniqueSpellDocumentTag()) {}

  /// True when the spell checker finds no misspelling; never for fewer than two characters, nor in
  /// a language that it does not offer.
  bool isValid(std::string_view word, std::string_view code);

  /// The spell checker's one correction of the whole word.
  std::optional<std::string> correction(std::string_view word, std::string_view code);

  /// The spell checker's name of the language with this code ("ru" may be "ru_RU" there). Found
  /// names are remembered.
  std::optional<std::string> resolveLanguage(std::string_view code);

  /// At least two of: a digit, a symbol, both cases; in a word of seven characters or more.
  static bool looksLikeSecret(std::string_view word);

 private:
  std::optional<std::string> findLanguage(std::string_view code);

  SpellChecker& checker_;
  int tag_;
  std::map<std::string, std::string, std::less<>> resolvedLanguages_;
};

}  // namespace kivra
