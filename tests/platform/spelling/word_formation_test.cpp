#include "platform/spelling/word_formation.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "platform/spelling/letter_habits.h"
#include "platform/spelling/slip_model.h"

namespace kivra {
namespace {

std::string coded(std::u32string_view word) { return encodeWord(word).value_or(""); }

class WordFormationTest : public testing::Test {
 protected:
  static std::unique_ptr<SpellingIndex> makeIndex() {
    const auto forms = [](const std::function<void(std::u32string_view, bool)>& form) {
      for (const auto* word : {U"plot", U"stop", U"basic", U"try", U"man", U"page", U"doesn't",
                               U"honor", U"realize", U"латинский", U"буквальный", U"значение"}) {
        form(word, true);
      }
    };
    return SpellingIndex::fromBlock(SpellingIndex::build(forms,
                                                         {{"man", {40, seenLower}},
                                                          {"page", {40, seenLower}},
                                                          {coded(U"сокет"), {13, seenLower}},
                                                          {coded(U"сокета"), {9, seenLower}},
                                                          {coded(U"сокеты"), {9, seenLower}}},
                                                         1),
                                    1);
  }

  std::unique_ptr<SpellingIndex> index_ = makeIndex();
  WordFormation formation_{*index_};
};

TEST_F(WordFormationTest, KnowsPrefixesSuffixesAndComparatives) {
  for (const auto* word : {U"plotless", U"replot", U"нелатинский", U"буквальнее"}) {
    EXPECT_TRUE(formation_.isDerived(coded(word))) << decodeWord(coded(word));
  }
  // Slips at the joint are no derivations.
  for (const auto* word : {U"stoped", U"basicly", U"trys", U"ннелатинский", U"xplot"}) {
    EXPECT_FALSE(formation_.isDerived(coded(word))) << decodeWord(coded(word));
  }
}

TEST_F(WordFormationTest, KnowsCompoundsStemsAndOtherSpellings) {
  EXPECT_TRUE(formation_.isCompound("manpage"));
  EXPECT_FALSE(formation_.isCompound("plotpage")) << "not common enough";
  EXPECT_TRUE(formation_.isStemOfNegation("doesn"));
  EXPECT_FALSE(formation_.isStemOfNegation("man"));
  for (const auto* word : {U"honour", U"realise", U"значенье"}) {
    EXPECT_TRUE(formation_.isVariant(coded(word))) << decodeWord(coded(word));
  }
  EXPECT_FALSE(formation_.isVariant("honur"));
}

TEST_F(WordFormationTest, KnowsFormsOfOneWord) {
  EXPECT_TRUE(WordFormation::isOtherForm(coded(U"информаций"), coded(U"информации")));
  EXPECT_TRUE(WordFormation::isOtherForm("turneth", "turned"));
  EXPECT_FALSE(WordFormation::isOtherForm("recieve", "receive"));
}

TEST_F(WordFormationTest, CountsTheListedFormsOfAWordThatTheDictionaryLacks) {
  EXPECT_EQ(formation_.listedForms(coded(U"сокетами")), 3U);
  EXPECT_EQ(formation_.listedForms(coded(U"сокет")), 2U) << "beside the word itself";
  EXPECT_EQ(formation_.listedForms(coded(U"сонет")), 0U);
  EXPECT_EQ(formation_.listedForms("mans"), 0U) << "the dictionary has it";
}

TEST(LetterHabitsTest, StrangeRowsOfLettersCostMore) {
  LetterHabitsBuilder builder;
  for (const char* word : {"banana", "bandana", "banal", "canal"}) builder.add(word);
  const std::string table = builder.finish();
  const LetterHabits habits({reinterpret_cast<const std::uint8_t*>(table.data()), table.size()});
  EXPECT_LT(habits.cost("banala"), habits.cost("bnaala"));
  EXPECT_EQ(LetterHabits().cost("banana"), 0);
}

TEST(SlipModelTest, SlipsByEarCostLessThanOtherLetters) {
  const SlipModel slips;
  const auto cost = [&](std::u32string_view typed, std::u32string_view meant) {
    return slips.cost(coded(typed), coded(meant));
  };
  EXPECT_LT(cost(U"зделать", U"сделать"), cost(U"вделать", U"сделать"));
  EXPECT_LT(cost(U"жызнь", U"жизнь"), cost(U"жшзнь", U"жизнь"));
  EXPECT_LT(cost(U"прийдя", U"придя"), cost(U"прийдя", U"пройдя"));
  EXPECT_LT(cost(U"хочеш", U"хочешь"), cost(U"хочеш", U"хочет"));
  EXPECT_LT(cost(U"recieve", U"receive"), cost(U"recxive", U"receive"));
  EXPECT_LT(cost(U"responsable", U"responsible"), cost(U"responsoble", U"responsible"));
}

}  // namespace
}  // namespace kivra
