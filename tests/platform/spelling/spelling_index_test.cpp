#include "platform/spelling/spelling_index.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kivra {
namespace {

std::string blockOf(const std::vector<std::u32string>& words, const WordFrequencies& list = {}) {
  return SpellingIndex::build(
      [&](const auto& form) {
        for (const auto& word : words) form(word, true);
      },
      list, 7);
}

std::string code(std::u32string_view word) { return encodeWord(word).value_or(""); }

TEST(WordAutomaton, numbersItsWordsInOrder) {
  const std::vector<std::string> words = {"a", "ab", "abc", "b", "bbc", "cab", "cabs", "dabs"};
  WordAutomatonBuilder builder;
  for (const auto& word : words) builder.add(word);
  const std::uint32_t root = builder.finish();
  const WordAutomaton automaton(builder.edges(), root);
  EXPECT_TRUE(WordAutomaton::isSound(builder.edges(), root, builder.wordCount()));
  for (std::uint32_t i = 0; i < words.size(); ++i) EXPECT_EQ(automaton.find(words[i]), i);
  for (const char* other : {"", "c", "ca", "bb", "abcd", "z"}) EXPECT_FALSE(automaton.find(other));
}

TEST(WordAutomaton, sharesEndings) {
  WordAutomatonBuilder builder;
  for (const char* word : {"baking", "making", "raking", "taking"}) builder.add(word);
  builder.finish();
  EXPECT_EQ(builder.edges().size(), 1U + 4U + 5U);
}

TEST(WordAutomaton, soundnessFindsCirclesAndWrongNumbers) {
  WordAutomatonBuilder builder;
  for (const char* word : {"ab", "cd"}) builder.add(word);
  const std::uint32_t root = builder.finish();
  const auto good = builder.edges();
  EXPECT_FALSE(WordAutomaton::isSound(good, root, 3));
  EXPECT_FALSE(WordAutomaton::isSound(good, 99, 2));
  for (std::size_t i = 1; i < good.size(); ++i) {
    auto circle = good;
    circle[i].packed |= static_cast<std::uint32_t>(i) << 10U;
    EXPECT_FALSE(WordAutomaton::isSound(circle, root, 2)) << i;
    auto misnumbered = good;
    misnumbered[i].wordsBefore += 1;
    EXPECT_FALSE(WordAutomaton::isSound(misnumbered, root, 2)) << i;
  }
}

TEST(SpellingIndex, knowsFormsCasesAndFrequencies) {
  const WordFrequencies list = {{code(U"кот"), {40, seenLower | seenCounted}},
                                {code(U"еж"), {20, seenLower}},
                                {code(U"щас"), {17, seenLower | seenShadowed}}};
  const auto index =
      SpellingIndex::fromBlock(blockOf({U"кот", U"Кот", U"Москва", U"ёж", U"США"}, list), 7);
  ASSERT_TRUE(index);
  EXPECT_EQ(index->find(code(U"кот")),
            (IndexedWord{true, LetterCase::lower, {40, seenLower | seenCounted}}));
  EXPECT_EQ(index->find(code(U"москва")), (IndexedWord{true, LetterCase::capitalised, {}}));
  EXPECT_EQ(index->find(code(U"сша")), (IndexedWord{true, LetterCase::upper, {}}));
  EXPECT_EQ(index->find(code(U"щас")),
            (IndexedWord{false, LetterCase::lower, {17, seenLower | seenShadowed}}));
  const IndexedWord hedgehog{true, LetterCase::lower, {20, seenLower}};
  EXPECT_EQ(index->find(code(U"ёж")), hedgehog);
  EXPECT_EQ(index->find(code(U"еж")), hedgehog);
  EXPECT_FALSE(index->find(code(U"ко")));
}

TEST(SpellingIndex, leavesOutForbiddenForms) {
  const std::string block = SpellingIndex::build(
      [](const auto& form) {
        form(U"good", true);
        form(U"alot", true);
        form(U"alot", false);
      },
      {{"alot", {30, seenLower}}}, 7);
  const auto index = SpellingIndex::fromBlock(block, 7);
  ASSERT_TRUE(index);
  EXPECT_TRUE(index->find("good"));
  EXPECT_FALSE(index->find("alot"));
}

TEST(SpellingIndex, mayBeEmpty) {
  const auto index = SpellingIndex::fromBlock(blockOf({}), 7);
  ASSERT_TRUE(index);
  EXPECT_FALSE(index->find("a"));
}

TEST(SpellingIndex, refusesOtherAndDamagedBlocks) {
  const std::string good = blockOf({U"one", U"two", U"three"});
  EXPECT_TRUE(SpellingIndex::fromBlock(good, 7));
  EXPECT_FALSE(SpellingIndex::fromBlock(good, 8));
  for (std::size_t size = 0; size < good.size(); ++size) {
    EXPECT_FALSE(SpellingIndex::fromBlock(good.substr(0, size), 7)) << size;
  }
  EXPECT_FALSE(SpellingIndex::fromBlock(good + "x", 7));
  for (std::size_t i = 0; i < good.size(); ++i) {
    std::string damaged = good;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x10);
    // The two reserved words at the end of the header hold nothing that could be damaged.
    if (i < 40 || i >= 48) {
      EXPECT_FALSE(SpellingIndex::fromBlock(damaged, 7)) << i;
    }
  }
}

}  // namespace
}  // namespace kivra
