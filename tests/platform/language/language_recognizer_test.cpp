#include <gtest/gtest.h>

#include <fstream>

#include "language_quality.h"
#include "platform/language/cld2_language_recognizer.h"

namespace kivra {
namespace {

TEST(Cld2LanguageRecognizer, KnowsMostShortSentences) {
  std::ifstream sentences(KIVRA_SENTENCES);
  Cld2LanguageRecognizer recognizer;
  std::size_t right = 0;
  std::size_t all = 0;
  for (const auto& [language, shares] : quality::recognizedByLanguage(recognizer, sentences)) {
    const auto share = static_cast<double>(shares.right) / static_cast<double>(shares.sentences);
    EXPECT_GE(share, 0.85) << language;
    right += shares.right;
    all += shares.sentences;
  }
  ASSERT_GT(all, 300U);
  EXPECT_GE(static_cast<double>(right) / static_cast<double>(all), 0.95);
}

TEST(Cld2LanguageRecognizer, RepetitionChangesNothing) {
  Cld2LanguageRecognizer recognizer;
  for (const std::string_view word : {"привет ", "слово ", "Где вокзал? "}) {
    std::string text;
    for (int i = 0; i < 200; ++i) text += word;
    EXPECT_EQ(recognizer.dominantLanguage(text), "ru") << word;
  }
}

TEST(Cld2LanguageRecognizer, LettersDecideBeforeWords) {
  Cld2LanguageRecognizer recognizer;
  EXPECT_EQ(recognizer.dominantLanguage("їжа"), "uk");
  EXPECT_EQ(recognizer.dominantLanguage("ёж"), "ru");
  EXPECT_EQ(recognizer.dominantLanguage("привет, hi"), "ru");
  EXPECT_EQ(recognizer.dominantLanguage("hello everybody, привет"), "en");
  EXPECT_EQ(recognizer.dominantLanguage("ありがとう"), "ja");
  EXPECT_EQ(recognizer.dominantLanguage("שלום עולם"), "he");
  EXPECT_EQ(recognizer.dominantLanguage(""), std::nullopt);
  EXPECT_EQ(recognizer.dominantLanguage("\xFF\xFE 12"), std::nullopt);
}

}  // namespace
}  // namespace kivra
