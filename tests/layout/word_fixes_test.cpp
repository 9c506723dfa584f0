#include "layout/word_fixes.h"

#include "layout/switcher_fixture.h"

namespace kivra {
namespace {

using Kind = UndoStack::ActionKind;

class WordFixesTest : public SwitcherFixture {
 protected:
  WordFixesTest() {
    desktop_.spellChecker.setDictionary("en", {"hello", "world"},
                                        {{"helo", "hello"},
                                         {"hel", "hell"},
                                         {"qworld", "world"},
                                         {"qqorld", "world"},
                                         {"worldqq", "world"},
                                         {"worlqqq", "world"},
                                         {"he1o", "hello"},
                                         {"moskow", "Moskow"},
                                         {"naiv", "nai\u0308v"}});
  }
};

TEST_F(WordFixesTest, TakesTheSecondOfTwoCapitalsBack) {
  select("ru");
  EXPECT_EQ(mended("GHbdtn"), "<<<<<<Ghbdtn_");
  EXPECT_EQ(kind(), Kind::doubleCapital);
  EXPECT_EQ(token(), "ПРивет");
  EXPECT_EQ(undone(), "<<<<<<<GHbdtn_");
  EXPECT_EQ(mended("GHb"), "<<<Ghb_") << "three keys are enough";
  for (const auto* name : {"GH", "GHB", "GHbD", "gHb", "Ghb", "GHb1"}) {
    EXPECT_EQ(mended(name), "-") << name;
  }
  services_.settings().autoFixDoubleCapitals.set(false);
  EXPECT_EQ(mended("GHbdtn"), "-");
}

TEST_F(WordFixesTest, TypesACloseCorrectionAndTakesItBack) {
  EXPECT_TRUE(word("helo", key_codes::returnKey));
  EXPECT_EQ(taken(), "<<<<'h'e'l'l'o^");
  EXPECT_EQ(kind(), Kind::correct);
  EXPECT_EQ(token(), "helo");
  EXPECT_EQ(undone(), "<<<<<<helo^") << "as many Deletes as the correction has characters, and one";
  EXPECT_EQ(mended("naiv"), "<<<<'n'a'i\u0308'v_");
  EXPECT_EQ(undone(), "<<<<<naiv_");
  services_.settings().autoCorrectTypos.set(false);
  EXPECT_EQ(mended("helo"), "-");
}

TEST_F(WordFixesTest, CorrectsWithinItsLimits) {
  EXPECT_EQ(mended("hel"), "-") << "three keys";
  EXPECT_EQ(mended("he1o"), "-") << "a digit";
  EXPECT_EQ(mended("heloo"), "-") << "no correction known";
  EXPECT_EQ(mended("qworld"), "<<<<<<'w'o'r'l'd_") << "six letters, one off";
  EXPECT_EQ(mended("qqorld"), "-") << "six letters, two off";
  EXPECT_EQ(mended("worldqq"), "<<<<<<<'w'o'r'l'd_") << "seven letters, two off";
  EXPECT_EQ(mended("worlqqq"), "-") << "seven letters, three off";
}

TEST_F(WordFixesTest, KeepsTheCapitalThatWasTyped) {
  EXPECT_EQ(mended("Helo"), "<<<<'H'e'l'l'o_");
  EXPECT_EQ(mended("moskow"), "<<<<<<'M'o's'k'o'w_") << "case alone may be corrected";
  EXPECT_EQ(mended("Moskow"), "-") << "the correction is what was typed";
}

TEST_F(WordFixesTest, NeverTypesAWordThatTheUserRolledBack) {
  services_.exceptions().add("World");
  EXPECT_EQ(mended("Qworld"), "-");
  EXPECT_EQ(mended("helo"), "<<<<'h'e'l'l'o_");
  services_.exceptions().add("Helo");
  EXPECT_EQ(allMended({"HElo", "helo"}), "--");
}

TEST_F(WordFixesTest, FixesCapitalsBeforeTypos) { EXPECT_EQ(mended("HElo"), "<<<<Helo_"); }

}  // namespace
}  // namespace kivra
