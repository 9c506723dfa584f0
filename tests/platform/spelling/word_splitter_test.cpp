#include "platform/spelling/word_splitter.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/spelling/letter_code.h"

namespace kivra {
namespace {

std::vector<std::u32string> words(std::u32string_view text) {
  std::vector<std::u32string> out;
  for (const FoundWord& word : findWords(text)) out.emplace_back(word.text);
  return out;
}

using Found = std::vector<std::u32string>;

TEST(WordSplitter, dropsPunctuationAround) {
  EXPECT_EQ(words(U"it."), Found{U"it"});
  EXPECT_EQ(words(U"n."), Found{}) << "an abbreviation, not the keys of тю";
  EXPECT_EQ(words(U"(\"well,\" he said)"), (Found{U"well", U"he", U"said"}));
  EXPECT_EQ(words(U"'quoted'"), Found{U"quoted"});
  EXPECT_EQ(words(U"e.g."), Found{});
}

TEST(WordSplitter, keepsWhatJoinsLetters) {
  EXPECT_EQ(words(U"don't don’t кто-то well- -known"),
            (Found{U"don't", U"don’t", U"кто-то", U"well", U"known"}));
}

TEST(WordSplitter, skipsDigitsAndInitials) {
  EXPECT_EQ(words(U"42 mp3 2-й B2B T. Rex"), Found{U"Rex"});
}

TEST(WordSplitter, signsInsideWordsAreLettersOfTheOtherLayout) {
  EXPECT_EQ(words(U"to` ,sk jib,jr ve;"), (Found{U"to`", U",sk", U"jib,jr", U"ve"}));
  EXPECT_EQ(words(U"one, two;"), (Found{U"one", U"two"}));
}

TEST(WordSplitter, countsUtf16Units) {
  const auto found = findWords(U"😀 да, 😀нет");
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].location, 3U);
  EXPECT_EQ(found[0].length, 2U);
  EXPECT_EQ(found[1].location, 9U);
}

TEST(LetterCode, decodesWhateverComes) {
  EXPECT_EQ(decodeUtf8("aй\xF0\x9F\x98\x80"), U"aй😀");
  EXPECT_EQ(decodeUtf8("\xD0"), U"\uFFFD");
  EXPECT_EQ(decodeUtf8("\xC0\xAF"), U"\uFFFD\uFFFD");
  EXPECT_EQ(decodeUtf8("\xED\xA0\x80"), U"\uFFFD\uFFFD\uFFFD") << "a surrogate";
  EXPECT_EQ(decodeUtf8("\xE2\x82x"), U"\uFFFDx");
}

TEST(LetterCode, tellsHowWordsAreWritten) {
  EXPECT_EQ(letterCaseOf(U"ёж"), LetterCase::lower);
  EXPECT_EQ(letterCaseOf(U"Ёж-то"), LetterCase::capitalised);
  EXPECT_EQ(letterCaseOf(U"США"), LetterCase::upper);
  EXPECT_EQ(letterCaseOf(U"iPhone"), LetterCase::mixed);
}

TEST(LetterCode, encodesAndDecodes) {
  EXPECT_EQ(decodeWord(encodeWord(U"Щёлково-то’s").value_or("")), "щёлково-то's");
  EXPECT_FALSE(encodeWord(U"naïve"));
}

}  // namespace
}  // namespace kivra
