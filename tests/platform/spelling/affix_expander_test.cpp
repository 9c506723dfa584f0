#include "platform/spelling/affix_expander.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "platform/spelling/letter_code.h"

namespace kivra {
namespace {

struct Forms {
  std::set<std::string> allowed;
  std::set<std::string> forbidden;
};

Forms expand(std::string_view aff, std::string_view dic) {
  Forms forms;
  AffixExpander(aff).expand(dic, [&](std::u32string_view form, bool allowed) {
    std::string text;
    for (const char32_t c : form) appendUtf8(text, c);
    (allowed ? forms.allowed : forms.forbidden).insert(text);
  });
  return forms;
}

using Words = std::set<std::string>;

TEST(AffixExpander, appliesSuffixesByTheirConditions) {
  const Forms forms =
      expand("SET UTF-8\nSFX A Y 3\nSFX A ь и [тн]ь\nSFX A 0 s [^ь]\nSFX A у ой [^ао]у\n",
             "3\nночь/A\nтень/A\nкошку/A\ndog/A\n");
  EXPECT_EQ(forms.allowed,
            (Words{"ночь", "тень", "тени", "кошку", "кошкой", "кошкуs", "dog", "dogs"}));
}

TEST(AffixExpander, crossesPrefixesOnlyWhereBothAllowIt) {
  const std::string dic = "1\ndo/AB\n";
  EXPECT_EQ(expand("PFX A Y 1\nPFX A 0 un .\nSFX B Y 1\nSFX B 0 ing .\n", dic).allowed,
            (Words{"do", "undo", "doing", "undoing"}));
  EXPECT_EQ(expand("PFX A N 1\nPFX A 0 un .\nSFX B Y 1\nSFX B 0 ing .\n", dic).allowed,
            (Words{"do", "undo", "doing"}));
}

TEST(AffixExpander, putsSuffixesOnSuffixes) {
  EXPECT_EQ(expand("SFX A Y 1\nSFX A 0 er/B .\nSFX B Y 1\nSFX B 0 s .\n", "1\nwork/A\n").allowed,
            (Words{"work", "worker", "workers"}));
}

TEST(AffixExpander, endsWhenRulesLeadInACircle) {
  EXPECT_EQ(expand("SFX A Y 1\nSFX A 0 x/A .\n", "1\na/A\n").allowed, (Words{"a", "ax", "axx"}));
}

TEST(AffixExpander, heedsMarksOfForms) {
  const Forms forms = expand(
      "NEEDAFFIX N\nFORBIDDENWORD F\nNOSUGGEST S\nONLYINCOMPOUND C\nSFX A Y 1\nSFX A 0 s .\n",
      "4\nroot/NA\nbad/F\nrude/S\npart/C\n");
  EXPECT_EQ(forms.allowed, Words{"roots"});
  EXPECT_EQ(forms.forbidden, Words{"bad"});
}

TEST(AffixExpander, readsFlagsOfAllKinds) {
  EXPECT_EQ(expand("FLAG long\nSFX Aa Y 1\nSFX Aa 0 s .\n", "1\ncat/BbAa\n").allowed,
            (Words{"cat", "cats"}));
  EXPECT_EQ(expand("FLAG num\nSFX 999 Y 1\nSFX 999 0 s .\n", "1\ncat/12,999\n").allowed,
            (Words{"cat", "cats"}));
  EXPECT_EQ(expand("AF 2\nAF X\nAF A\nSFX A Y 1\nSFX A 0 s .\n", "1\ncat/2\n").allowed,
            (Words{"cat", "cats"}));
}

TEST(AffixExpander, survivesNonsense) {
  expand("SFX\nSFX A\nSFX A Y\nPFX A Y x\nSFX A 0 s [\nSFX A 0 s [^\nAF\n",
         "x\n/\n/A\na/\n\xff\xfe/A");
}

}  // namespace
}  // namespace kivra
