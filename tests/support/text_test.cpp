#include "support/text.h"

#include <gtest/gtest.h>

namespace kivra::text {
namespace {

TEST(Text, CountsCharactersAsUsersSeeThem) {
  EXPECT_EQ(characterCount(""), 0U);
  EXPECT_EQ(characterCount("привет, ёж"), 10U);
  EXPECT_EQ(characterCount("и\u0306е\u0308"), 2U) << "decomposed й and ё";
  EXPECT_EQ(characterCount("e\u0301"), 1U);
  EXPECT_EQ(characterCount("👨‍👩‍👧🇷🇺👍🏽"), 3U);
  EXPECT_EQ(characterCount("\r\n"), 1U);
  EXPECT_EQ(characterCount("a\xFFz"), 3U) << "a bad byte is one character";
}

TEST(Text, SplitsIntoTheSameCharactersThatItCounts) {
  const std::string mixed = "aи\u0306👍🏽\r\nz";
  EXPECT_EQ(characters(mixed), (std::vector<std::string>{"a", "и\u0306", "👍🏽", "\r\n", "z"}));
  EXPECT_EQ(prefix(mixed, 3), "aи\u0306👍🏽");
  EXPECT_EQ(prefix(mixed, 99), mixed);
  EXPECT_EQ(firstCharacter(""), "");
}

TEST(Text, MapsCaseFullyAndWithoutALocale) {
  EXPECT_EQ(lowercased("ПРИВЕТ, ЁЖ ABC"), "привет, ёж abc");
  EXPECT_EQ(uppercased("привет ёђ xyz"), "ПРИВЕТ ЁЂ XYZ");
  EXPECT_EQ(uppercased("straße"), "STRASSE");
  EXPECT_EQ(lowercased("Iİ"), "ii̇") << "no Turkish rules, whatever the locale";
  EXPECT_TRUE(isUppercase("Ё"));
  EXPECT_FALSE(isUppercase("7"));
  EXPECT_FALSE(isLowercase("中"));
}

TEST(Text, KnowsLettersAndDigits) {
  EXPECT_TRUE(isLetter(U'ё'));
  EXPECT_TRUE(isLetter(U'\u0306')) << "marks count as letters";
  EXPECT_FALSE(isLetter(U'5'));
  EXPECT_TRUE(isDecimalDigit(U'٣'));
  EXPECT_FALSE(isDecimalDigit(U'½'));
  EXPECT_TRUE(isAlphanumeric(U'½'));
  EXPECT_FALSE(isAlphanumeric(U'_'));
  EXPECT_TRUE(isAllLetters("и\u0306од"));
  EXPECT_FALSE(isAllLetters("don't"));
}

TEST(Text, TrimsWhiteSpaceAndLineBreaks) {
  EXPECT_EQ(trimmed(" \t\r\n\u00A0\u2029привет мир\u3000\n"), "привет мир");
  EXPECT_EQ(trimmed(" \n "), "");
  EXPECT_EQ(splitAtSpaces("  a  b\tc "), (std::vector<std::string_view>{"a", "b\tc"}));
}

TEST(Text, MeasuresUtf16AndMendsBadUtf8) {
  EXPECT_EQ(utf16Length("aё😀"), 4U);
  EXPECT_EQ(validUtf8("a\xC3(\xE2\x82"), "a\uFFFD(\uFFFD");
  EXPECT_EQ(validUtf8("ок"), "ок");
}

}  // namespace
}  // namespace kivra::text
