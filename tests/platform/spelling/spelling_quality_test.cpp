#include "spelling_quality.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/spelling/dictionary_files.h"
#include "platform/spelling/hunspell_spell_checker.h"

namespace kivra::quality {
namespace {

// Harm counts ten times: a word set wrong costs its writer more than one left alone.
double weighted(const Shares& shares) { return shares.rightPercent() - 10 * shares.wrongPercent(); }

class SpellingQuality : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    auto options = HunspellSpellChecker::systemOptions();
    options.dataDirectories = {KIVRA_DATA_DIR};
    options.cacheDirectory = KIVRA_TEST_CACHE;
    checker_ = new HunspellSpellChecker(options);
    checker_->waitUntilLoaded();
  }
  static void TearDownTestSuite() {
    delete checker_;
    checker_ = nullptr;
  }

  void SetUp() override {
    ASSERT_EQ(checker_->availableLanguages(), (std::vector<std::string>{"ru_RU", "en_US"}));
    ASSERT_TRUE(std::filesystem::exists(KIVRA_DATA_DIR "/ru.freq")) << "run tools/word-data";
  }

  static Oracle oracle() { return oracleOf(*checker_); }

  static std::string sample(const std::string& name) {
    return readWholeFile(std::filesystem::path(KIVRA_SPELLING_SAMPLES) / name).value_or("");
  }

  static std::string notes(const Shares& shares) {
    std::string out;
    for (const auto& note : shares.notes) out += note + "\n";
    return out;
  }

  static HunspellSpellChecker* checker_;
};

HunspellSpellChecker* SpellingQuality::checker_ = nullptr;

// The bounds are what was reached when they were written, rounded down.
TEST_F(SpellingQuality, misspellingsAreSetRight) {
  const Shares russian = misspellings(oracle(), sample("misspellings.ru.tsv"), true);
  EXPECT_GT(russian.words, 500U);
  EXPECT_GE(weighted(russian), 72) << notes(russian);
  const Shares english = misspellings(oracle(), sample("misspellings.en.tsv"), false);
  EXPECT_GT(english.words, 400U);
  EXPECT_GE(weighted(english), 47) << notes(english);
}

TEST_F(SpellingQuality, correctTextIsLeftAlone) {
  for (const bool russian : {true, false}) {
    const std::string text = sample(russian ? "running_text.ru.txt" : "running_text.en.txt");
    const Shares corrected = correctedText(oracle(), text, russian);
    EXPECT_GT(corrected.words, 600U);
    EXPECT_EQ(corrected.wrong, 0U) << notes(corrected);
    const Shares switched = switchedText(oracle(), text, russian);
    EXPECT_EQ(switched.wrong, 0U) << notes(switched);
  }
}

TEST_F(SpellingQuality, wrongLayoutIsFound) {
  const Shares russian = wrongLayout(oracle(), sample("running_text.ru.txt"), true);
  EXPECT_GE(russian.rightPercent(), 98) << notes(russian);
  const Shares english = wrongLayout(oracle(), sample("running_text.en.txt"), false);
  EXPECT_GE(english.rightPercent(), 99) << notes(english);
}

TEST_F(SpellingQuality, shortWordsDoNotBlockTheOtherLayout) {
  const Oracle words = oracle();
  for (const char* word : {"еру", "шт", "щт", "ащк"})
    EXPECT_FALSE(words.isValid(word, true)) << word;
  for (const char* word : {"pf", "bp", "yt", "tot", "to`", ",sk"}) {
    EXPECT_FALSE(words.isValid(word, false)) << word;
  }
  for (const char* word : {"за", "из", "еще", "ещё", "мы", "ёлка", "Елка"}) {
    EXPECT_TRUE(words.isValid(word, true)) << word;
  }
  for (const char* word : {"the", "in", "it.", "don't", "don’t", "i.e.", "well-known", "harbour"}) {
    EXPECT_TRUE(words.isValid(word, false)) << word;
  }
}

}  // namespace
}  // namespace kivra::quality
