#include "layout/replacement_application.h"

#include "layout/switcher_fixture.h"

namespace kivra {
namespace {

using Kind = UndoStack::ActionKind;

class ReplacementApplicationTest : public SwitcherFixture {};

TEST_F(ReplacementApplicationTest, ReplacesAWordTypedInEitherLayout) {
  replaceWith({{"ios", "iOS"}});
  EXPECT_EQ(mended("ios"), "<<<'i'O'S_");
  EXPECT_EQ(kind(), Kind::replacement);
  EXPECT_EQ(token(), "ios");
  EXPECT_EQ(undone(), "<<<<ios_");
  EXPECT_EQ(mended("iOS"), "-") << "already as wanted";
  EXPECT_EQ(mended("IOS"), "<<<'i'O'S_");
  select("ru");
  EXPECT_EQ(mended("ioS"), "<<<'i'O'S_") << "the source stays";
  EXPECT_EQ(token(), "шщЫ");
  services_.exceptions().add("шщы");
  EXPECT_EQ(mended("IOS"), "-") << "rolled back in this reading";
  select("us");
  EXPECT_EQ(mended("IOS"), "<<<'i'O'S_") << "but not in that";
}

TEST_F(ReplacementApplicationTest, PrefersTheReadingOnTheScreen) {
  replaceWith({{"ghj", "1"}, {"про", "2"}});
  EXPECT_EQ(mended("ghj"), "<<<'1_");
  select("ru");
  EXPECT_EQ(mended("ghj"), "<<<'2_");
  replaceWith({{"про", "ghj"}});
  select("us");
  EXPECT_EQ(mended("ghj"), "-") << "the other reading's replacement is what was typed";
}

TEST_F(ReplacementApplicationTest, ReplacesAPhraseAndTakesItBackWordByWord) {
  replaceWith({{"aa bb", "👍🏽e\u0301"}});
  EXPECT_EQ(mended("aA"), "-");
  EXPECT_TRUE(word("bb", key_codes::returnKey));
  EXPECT_EQ(taken(), "<<<<<'👍🏽'e\u0301^");
  EXPECT_EQ(token(), "aA bb");
  EXPECT_EQ(undone(), "<<<aA_bb^") << "two characters and the trigger are erased";
}

TEST_F(ReplacementApplicationTest, NeedsSpacesBetweenTheWordsOfAPhrase) {
  replaceWith({{"aa bb", "X"}});
  for (const auto trigger : {key_codes::returnKey, key_codes::tab, key_codes::keypadEnter}) {
    word("aa", trigger);
    EXPECT_EQ(mended("bb"), "-");
    switcher().wordBoundary(std::nullopt);
  }
  EXPECT_EQ(allMended({"aa", "aa", "bb"}), "--<<<<<'X_");
}

TEST_F(ReplacementApplicationTest, TriesTheLongestRunFirst) {
  replaceWith({{"bb", "Y"}, {"aa bb", "X"}});
  EXPECT_EQ(allMended({"aa", "bb"}), "-<<<<<'X_");
  services_.exceptions().add("AA bb");
  EXPECT_EQ(allMended({"aa", "bb"}), "-<<'Y_") << "past a phrase that was rolled back";
  replaceWith({{"aa", "Z"}, {"aa cc", "X"}});
  EXPECT_EQ(allMended({"aa", "cc"}), "<<'Z_-") << "a first word replaced is no part of a phrase";
}

TEST_F(ReplacementApplicationTest, DoesNothingWithAnEmptyDictionary) {
  replaceWith({});
  EXPECT_EQ(mended("ios"), "-");
  EXPECT_EQ(mended("vbh"), "<<<[ru]~vbh_");
}

}  // namespace
}  // namespace kivra
