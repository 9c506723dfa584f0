#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "platform/spell_checker.h"

namespace kivra {

/// What every spell checker does with one word; the embedded desktop's fixed lists know whole
/// strings only. `Backend` is default-constructible, has a function `SpellChecker& checker()` and
/// knows the English words cat, letter and correct, and the Russian кошка.
template <class Backend>
class SpellCheckerContract : public ::testing::Test {
 protected:
  SpellChecker& checker() { return backend_.checker(); }
  std::optional<TextRange> misspelled(std::string_view word, std::string_view code = "en") {
    return checker().checkSpellingOfString(word, 0, language(code), tag_);
  }
  std::optional<std::string> correction(TextRange range, std::string_view word,
                                        std::string_view code = "en") {
    return checker().correctionForWordRange(range, word, language(code), tag_);
  }

 private:
  /// The checker's own name of the language; the code itself where it offers none.
  std::string language(std::string_view code) {
    const auto names = checker().availableLanguages();
    const auto found = std::ranges::find_if(
        names, [code](const std::string& name) { return name.starts_with(code); });
    return found == names.end() ? std::string(code) : *found;
  }

  Backend backend_;
  int tag_ = backend_.checker().uniqueSpellDocumentTag();
};
TYPED_TEST_SUITE_P(SpellCheckerContract);

TYPED_TEST_P(SpellCheckerContract, TellsAMisspelledWord) {
  EXPECT_EQ(this->misspelled("letter"), std::nullopt);
  EXPECT_EQ(this->misspelled("LETTER"), std::nullopt);
  EXPECT_EQ(this->misspelled("lettter"), (TextRange{0, 7}));
  EXPECT_EQ(this->misspelled("кошкк", "ru"), (TextRange{0, 5})) << "in units of UTF-16";
}

TYPED_TEST_P(SpellCheckerContract, CorrectsAWord) {
  EXPECT_EQ(this->correction({0, 6}, "corect"), "correct");
  EXPECT_EQ(this->correction({0, 3}, "cat"), std::nullopt) << "nothing to correct";
  EXPECT_EQ(this->correction({0, 7}, "zzqqxxv"), std::nullopt) << "nothing like it";
}

TYPED_TEST_P(SpellCheckerContract, FindsNothingInALanguageThatItDoesNotOffer) {
  EXPECT_EQ(this->misspelled("qqq", "de_DE"), std::nullopt);
  EXPECT_EQ(this->correction({0, 6}, "corect", "de_DE"), std::nullopt);
}

TYPED_TEST_P(SpellCheckerContract, GivesEveryDocumentATagOfItsOwn) {
  std::set<int> tags;
  for (int i = 0; i < 5; ++i) tags.insert(this->checker().uniqueSpellDocumentTag());
  EXPECT_EQ(tags.size(), 5U);
}

REGISTER_TYPED_TEST_SUITE_P(SpellCheckerContract, TellsAMisspelledWord, CorrectsAWord,
                            FindsNothingInALanguageThatItDoesNotOffer,
                            GivesEveryDocumentATagOfItsOwn);

}  // namespace kivra
