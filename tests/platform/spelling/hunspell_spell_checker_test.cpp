#include "platform/spelling/hunspell_spell_checker.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/spell_checker_contract.h"

namespace kivra {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

constexpr std::string_view aff = "SET UTF-8\nSFX A Y 1\nSFX A 0 s [^s]\n";
constexpr std::string_view dic = "6\ncorrect/A\nletter/A\nWednesday\nyellow/A\ncat/A\nzyx\n";
constexpr std::string_view freq =
    "kivra frequencies 1\ncorrect\t40\t17\nletter\t40\t17\nletters\t20\t17\nwednesday\t30\t18\n"
    "cat\t30\t17\nkubectl\t30\t17\nyellow\t30\t17\n";

/// A folder of dictionaries that lasts for a test.
class DictionaryFolder {
 public:
  DictionaryFolder() {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    root_ = fs::temp_directory_path() /
            ("kivra-speller-" + std::to_string(getpid()) + "-" + test->name());
    fs::create_directories(root_);
  }
  ~DictionaryFolder() { fs::remove_all(root_); }
  DictionaryFolder(const DictionaryFolder&) = delete;
  DictionaryFolder& operator=(const DictionaryFolder&) = delete;

  void write(const std::string& name, std::string_view text) const {
    std::ofstream(root_ / name, std::ios::binary) << text;
  }

  void writeEnglish() const {
    write("en_US.aff", aff);
    write("en_US.dic", dic);
    write("en.freq", freq);
  }

  HunspellSpellChecker::Options options() const {
    return {{"ru", "en"}, {root_}, {root_}, root_ / "cache"};
  }

 protected:
  fs::path root_;
};

class HunspellSpellCheckerTest : public testing::Test, protected DictionaryFolder {
 protected:
  Names offered() {
    HunspellSpellChecker checker(options());
    checker.waitUntilLoaded();
    return checker.availableLanguages();
  }
};

bool isValid(SpellChecker& checker, std::string_view word, std::string_view language = "en_US") {
  return !checker.checkSpellingOfString(word, 0, language, 1);
}

std::string correction(SpellChecker& checker, std::string_view word) {
  return checker.correctionForWordRange({0, word.size()}, word, "en_US", 1).value_or("");
}

TEST_F(HunspellSpellCheckerTest, offersWhatIsInstalled) {
  EXPECT_EQ(offered(), Names{});
  writeEnglish();
  EXPECT_EQ(offered(), Names{"en_US"});
  write("en_GB.aff", aff);
  write("en_GB.dic", dic);
  EXPECT_EQ(offered(), Names{"en_US"});
}

TEST_F(HunspellSpellCheckerTest, startsByItselfWhenAsked) {
  writeEnglish();
  HunspellSpellChecker checker(options());
  for (int i = 0; i < 10'000 && checker.availableLanguages().empty(); ++i) usleep(1000);
  ASSERT_EQ(checker.availableLanguages(), Names{"en_US"});
  EXPECT_TRUE(isValid(checker, "letters"));
}

TEST_F(HunspellSpellCheckerTest, damagedDictionaryIsNotOffered) {
  writeEnglish();
  write("en_US.dic", "79013\nletter/A\n");  // cut short
  EXPECT_EQ(offered(), Names{});
  write("en_US.dic", "letter/A\ncat\n");  // no count
  EXPECT_EQ(offered(), Names{});
  write("en_US.dic", "2\nletter\n\xff\xfe\n");  // not in its encoding
  EXPECT_EQ(offered(), Names{});
  write("en_US.dic", dic);
  write("en_US.aff", "SFX A Y 1\n");  // names no encoding
  EXPECT_EQ(offered(), Names{});
  write("en_US.aff", "SET KLINGON-8\n");
  EXPECT_EQ(offered(), Names{});
  fs::remove(root_ / "en_US.aff");
  EXPECT_EQ(offered(), Names{});
}

TEST_F(HunspellSpellCheckerTest, nextDictionaryStandsInForADamagedOne) {
  writeEnglish();
  write("en_US.dic", "");
  write("en_GB.aff", aff);
  write("en_GB.dic", dic);
  EXPECT_EQ(offered(), Names{"en_GB"});
}

TEST_F(HunspellSpellCheckerTest, readsOtherEncodings) {
  write("ru_RU.aff", "SET KOI8-R\n");
  write("ru_RU.dic", "2\n\xcb\xcf\xdb\xcb\xc1\n\xa3\xd6\xc9\xcb\xc9\n");
  HunspellSpellChecker checker(options());
  checker.waitUntilLoaded();
  EXPECT_TRUE(isValid(checker, "кошка", "ru_RU"));
  EXPECT_TRUE(isValid(checker, "ежики", "ru_RU"));
  EXPECT_TRUE(isValid(checker, "Ёжики", "ru_RU"));
  EXPECT_FALSE(isValid(checker, "кошкб", "ru_RU"));
}

TEST_F(HunspellSpellCheckerTest, checksTheWordsInAString) {
  writeEnglish();
  HunspellSpellChecker checker(options());
  checker.waitUntilLoaded();
  EXPECT_TRUE(isValid(checker, "letters,"));
  EXPECT_TRUE(isValid(checker, "\"Letter\""));
  EXPECT_TRUE(isValid(checker, "letter-cat"));
  EXPECT_FALSE(isValid(checker, "letter-qqq"));
  EXPECT_TRUE(isValid(checker, "kubectl"));
  EXPECT_FALSE(isValid(checker, "zyx"));
  EXPECT_FALSE(isValid(checker, "wednesdey"));
  const auto misspelled = [&](std::string_view text, std::size_t from) {
    return checker.checkSpellingOfString(text, from, "en_US", 1);
  };
  EXPECT_EQ(misspelled("cat qqq, cat vvv", 0), (TextRange{4, 3}));
  EXPECT_EQ(misspelled("cat qqq, cat vvv", 5), (TextRange{13, 3}));
  EXPECT_EQ(misspelled("cat qqq, cat", 9), std::nullopt) << "without wrapping around";
  EXPECT_EQ(misspelled("qqq", 100), std::nullopt);
  EXPECT_EQ(misspelled("\U0001F600 cat qqq", 0), (TextRange{7, 3})) << "in units of UTF-16";
  EXPECT_EQ(checker.correctionForWordRange({4, 6}, "cat corect, cat", "en_US", 1), "correct");
}

TEST_F(HunspellSpellCheckerTest, correctsInTheCaseOfTheWord) {
  writeEnglish();
  HunspellSpellChecker checker(options());
  checker.waitUntilLoaded();
  EXPECT_EQ(correction(checker, "corect"), "correct");
  EXPECT_EQ(correction(checker, "Corect"), "Correct");
  EXPECT_EQ(correction(checker, "CORECT"), "CORRECT");
  EXPECT_EQ(correction(checker, "wednesdey"), "Wednesday");
  EXPECT_EQ(correction(checker, "coRect"), "");
  EXPECT_EQ(correction(checker, "qwertyq"), "");
  EXPECT_EQ(correction(checker, "act"), "");
  EXPECT_EQ(correction(checker, "yelolw"), "");  // two letters away from a word of six
}

TEST_F(HunspellSpellCheckerTest, longWordsCostNothing) {
  writeEnglish();
  HunspellSpellChecker checker(options());
  checker.waitUntilLoaded();
  const std::string word(10000, 'a');
  EXPECT_FALSE(isValid(checker, word));
  EXPECT_EQ(correction(checker, word), "");
  std::string dashes;
  for (int i = 0; i < 5000; ++i) dashes += "a-";
  EXPECT_FALSE(isValid(checker, dashes + "a"));
}

TEST_F(HunspellSpellCheckerTest, rebuildsADamagedOrStaleCache) {
  writeEnglish();
  EXPECT_EQ(offered(), Names{"en_US"});
  const fs::path cache = root_ / "cache/en_US.index";
  ASSERT_TRUE(fs::exists(cache));
  write("cache/en_US.index", "nonsense");
  EXPECT_EQ(offered(), Names{"en_US"});
  EXPECT_GT(fs::file_size(cache), 100U);
  write("en_US.dic", "2\nparrot\nkitten\n");
  HunspellSpellChecker checker(options());
  checker.waitUntilLoaded();
  EXPECT_TRUE(isValid(checker, "parrot"));
  EXPECT_EQ(correction(checker, "corect"), "");
}

TEST_F(HunspellSpellCheckerTest, takesTheIndexThatLiesBesideTheWordData) {
  writeEnglish();
  EXPECT_EQ(offered(), Names{"en_US"});
  const fs::path cache = root_ / "cache/en_US.index";
  const fs::path shipped = root_ / "en_US.index";
  fs::rename(cache, shipped);
  // Written anew by another installation.
  writeEnglish();
  EXPECT_EQ(offered(), Names{"en_US"});
  EXPECT_FALSE(fs::exists(cache)) << "nothing was to be built";

  write("en_US.dic", "2\nparrot\nkitten\n");
  HunspellSpellChecker checker(options());
  checker.waitUntilLoaded();
  EXPECT_TRUE(isValid(checker, "parrot"));
  EXPECT_EQ(correction(checker, "corect"), "");
  EXPECT_TRUE(fs::exists(cache));

  fs::remove(cache);
  writeEnglish();
  write("en_US.index", "nonsense");
  EXPECT_EQ(offered(), Names{"en_US"});
  EXPECT_TRUE(fs::exists(cache));
}

TEST_F(HunspellSpellCheckerTest, correctsWithACacheThatCannotBeWritten) {
  writeEnglish();
  write("cache", "a file where the folder should be");
  HunspellSpellChecker checker(options());
  checker.waitUntilLoaded();
  EXPECT_EQ(correction(checker, "corect"), "correct");
}

TEST_F(HunspellSpellCheckerTest, worksWithoutCacheAndFrequencies) {
  writeEnglish();
  fs::remove(root_ / "en.freq");
  write("cache", "a file where the folder should be");
  HunspellSpellChecker checker(options());
  checker.waitUntilLoaded();
  EXPECT_TRUE(isValid(checker, "cat"));
  EXPECT_TRUE(isValid(checker, "zyx"));
  EXPECT_FALSE(isValid(checker, "corect"));
}

class InstalledWords {
 public:
  InstalledWords() {
    folder_.writeEnglish();
    folder_.write("ru_RU.aff", "SET UTF-8\n");
    folder_.write("ru_RU.dic", "1\nкошка\n");
    checker_.waitUntilLoaded();
  }
  SpellChecker& checker() { return checker_; }

 private:
  DictionaryFolder folder_;
  HunspellSpellChecker checker_{folder_.options()};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Hunspell, SpellCheckerContract, InstalledWords);

}  // namespace
}  // namespace kivra
