#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "platform/spell_checker.h"

namespace kivra::embedded {

/// A real spell checker, in which a fixed list of words may stand in for a language.
class EmbeddedSpellChecker : public SpellChecker {
 public:
  using Corrections = std::map<std::string, std::string, std::less<>>;

  /// `real` gives the checker behind this one, at the first question that goes there; it may
  /// answer null.
  using RealChecker = std::function<SpellChecker*()>;

  explicit EmbeddedSpellChecker(RealChecker real) : real_(std::move(real)) {}

  /// From now on these words and corrections are all that the language ("ru", "en") has. Case does
  /// not count.
  void setDictionary(const std::string& language, const std::vector<std::string>& words,
                     const Corrections& corrections);

  std::vector<std::string> availableLanguages() override;
  int uniqueSpellDocumentTag() override { return ++lastTag_; }
  std::optional<TextRange> checkSpellingOfString(std::string_view string, std::size_t startingAt,
                                                 std::string_view language, int tag) override;
  std::optional<std::string> correctionForWordRange(TextRange range, std::string_view string,
                                                    std::string_view language, int tag) override;

 private:
  struct Dictionary {
    std::set<std::string, std::less<>> words;
    Corrections corrections;
  };

  const Dictionary* dictionaryFor(std::string_view language) const;
  SpellChecker* real();

  RealChecker real_;
  int lastTag_ = 0;
  std::map<std::string, Dictionary, std::less<>> dictionaries_;
};

}  // namespace kivra::embedded
