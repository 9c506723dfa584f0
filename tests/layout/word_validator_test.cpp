#include "layout/word_validator.h"

#include <gtest/gtest.h>

namespace kivra {
namespace {

/// A checker that knows one word, and counts how often it is asked for its languages.
class OneWordChecker : public SpellChecker {
 public:
  std::vector<std::string> languages;
  int languageQueries = 0;
  std::string lastLanguage;

  std::vector<std::string> availableLanguages() override {
    ++languageQueries;
    return languages;
  }
  int uniqueSpellDocumentTag() override { return 1; }
  std::optional<TextRange> checkSpellingOfString(std::string_view string,
                                                 std::size_t /*startingAt*/,
                                                 std::string_view language, int /*tag*/) override {
    lastLanguage = language;
    return string == "кот" || string == "я" ? std::nullopt : std::optional(TextRange{0, 1});
  }
  std::optional<std::string> correctionForWordRange(TextRange range, std::string_view /*string*/,
                                                    std::string_view /*language*/,
                                                    int /*tag*/) override {
    return std::to_string(range.length);
  }
};

TEST(WordValidator, ResolvesALanguageExactlyFirstThenByPrefix) {
  OneWordChecker checker;
  WordValidator validator(checker);
  EXPECT_FALSE(validator.isValid("кот", "ru")) << "no such language";
  checker.languages = {"rux", "ru-RU", "ru_RU"};
  EXPECT_EQ(validator.resolveLanguage("ru"), "ru-RU") << "a failure is not remembered";
  checker.languages = {"en_GB", "en"};
  EXPECT_EQ(validator.resolveLanguage("en"), "en");
  const auto queries = checker.languageQueries;
  EXPECT_TRUE(validator.isValid("кот", "ru"));
  EXPECT_EQ(checker.languageQueries, queries) << "a success is";
  EXPECT_EQ(checker.lastLanguage, "ru-RU");
}

TEST(WordValidator, NeedsTwoCharactersAndMeasuresInUtf16) {
  OneWordChecker checker;
  checker.languages = {"ru"};
  WordValidator validator(checker);
  EXPECT_FALSE(validator.isValid("я", "ru"));
  EXPECT_EQ(validator.correction("ко😀", "ru"), "4");
  EXPECT_EQ(validator.correction("кот", "en"), std::nullopt);
}

TEST(WordValidator, KnowsSecretsByTwoOfThreeSigns) {
  for (const auto* secret : {"Passw0rd", "Пароль2024", "abc-1def", "aB______", "qwe_rty1"}) {
    EXPECT_TRUE(WordValidator::looksLikeSecret(secret)) << secret;
  }
  for (const auto* word :
       {"password", "pass-word", "abc1def", "Ab1", "Passw0", "ПРИВЕТЫ", "ёЁёЁёЁё1"}) {
    EXPECT_FALSE(WordValidator::looksLikeSecret(word)) << word;
  }
}

}  // namespace
}  // namespace kivra
