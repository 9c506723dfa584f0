#pragma once

#include <cstddef>
#include <string_view>

#include "platform/spelling/spelling_index.h"

namespace kivra {

/// Recognises strings that a dictionary lacks and that are words all the same, since they are made
/// of its words in one of the usual ways. All words are encoded (see letter_code.h).
class WordFormation {
 public:
  /// Works on `index`, which must outlive it.
  explicit WordFormation(const SpellingIndex& index) : index_(index) {}

  /// A dictionary word with a usual prefix or suffix ("нелатинский", "plotless"), or a comparative
  /// of a dictionary word ("ничтожнее").
  [[nodiscard]] bool isDerived(std::string_view word) const;

  /// Two common words written as one ("manpage").
  [[nodiscard]] bool isCompound(std::string_view word) const;

  /// The British or the old spelling of a dictionary word ("honour", "просвещенье").
  [[nodiscard]] bool isVariant(std::string_view word) const;

  /// A word without the "'t" that follows in another run of keys ("doesn").
  [[nodiscard]] bool isStemOfNegation(std::string_view word) const;

  /// How many words that the dictionary lacks and the frequency lists know differ from this one in
  /// nothing but a usual ending: several of them make it a term or a name ("сокет") with its forms.
  [[nodiscard]] std::size_t listedForms(std::string_view word) const;

  /// Whether two words differ in nothing but their endings, both of them usual ones: the dictionary
  /// may lack a form of a word that it knows.
  [[nodiscard]] static bool isOtherForm(std::string_view word, std::string_view meant);

 private:
  [[nodiscard]] bool has(std::string_view word) const;
  [[nodiscard]] bool isListedOnly(std::string_view word) const;
  [[nodiscard]] bool hasPrefix(std::string_view word) const;
  [[nodiscard]] bool hasSuffix(std::string_view word) const;
  [[nodiscard]] bool isComparative(std::string_view word) const;
  [[nodiscard]] bool isOldSpelling(std::string_view word) const;

  const SpellingIndex& index_;
};

}  // namespace kivra
