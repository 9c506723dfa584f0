#include "layout/edit_distance.h"

#include <gtest/gtest.h>

#include "layout/word_fixes.h"

namespace kivra {
namespace {

TEST(EditDistance, CountsUserPerceivedCharacters) {
  EXPECT_EQ(editDistance("", "кот"), 3U);
  EXPECT_EQ(editDistance("кот", ""), 3U);
  EXPECT_EQ(editDistance("превет", "привет"), 1U);
  EXPECT_EQ(editDistance("првиет", "привет"), 2U) << "swapped neighbours are two substitutions";
  EXPECT_EQ(editDistance("e\u0301", "e"), 1U) << "an accented letter is one character";
  EXPECT_EQ(editDistance("kitten", "sitting"), 3U);
}

TEST(MatchCase, KeepsTheCapitalThatWasTyped) {
  EXPECT_EQ(matchCase("Превет", "привет"), "Привет");
  EXPECT_EQ(matchCase("превет", "привет"), "привет");
  EXPECT_EQ(matchCase("moskow", "Moscow"), "Moscow");
  EXPECT_EQ(matchCase("Ёлак", "ёлка"), "Ёлка");
  EXPECT_EQ(matchCase("", "привет"), "привет");
}

}  // namespace
}  // namespace kivra
