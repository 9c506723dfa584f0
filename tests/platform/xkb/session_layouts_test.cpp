#include "platform/xkb/session_layouts.h"

#include <gtest/gtest.h>

namespace kivra {
namespace {

std::string rules(const std::string& layouts, const std::string& variants) {
  std::string value;
  for (const auto& field :
       {std::string("evdev"), std::string("pc105"), layouts, variants, std::string()}) {
    value += field + '\0';
  }
  return value;
}

TEST(SessionLayouts, NamesAndLanguagesComeFromTheRegistry) {
  EXPECT_EQ(sessionLayouts(rules("us,ru", ""), {"English (US)", "Russian"}),
            (std::vector<SessionLayout>{{"us", {"en"}}, {"ru", {"ru"}}}));
}

TEST(SessionLayouts, VariantsStandInParentheses) {
  EXPECT_EQ(sessionLayouts(rules("us,ru", "dvorak,typewriter"),
                           {"English (Dvorak)", "Russian (typewriter)"}),
            (std::vector<SessionLayout>{{"us(dvorak)", {"en"}}, {"ru(typewriter)", {"ru"}}}));
}

TEST(SessionLayouts, WithoutThePropertyTheMapTells) {
  EXPECT_EQ(sessionLayouts("", {"Russian", "English (US)"}),
            (std::vector<SessionLayout>{{"ru", {"ru"}}, {"us", {"en"}}}));
}

TEST(SessionLayouts, MapWinsOverAStaleProperty) {
  EXPECT_EQ(sessionLayouts(rules("us,ru", ""), {"German"}),
            (std::vector<SessionLayout>{{"de", {"de"}}}));
}

TEST(SessionLayouts, OddGroupsAreUnknown) {
  EXPECT_EQ(sessionLayouts("", {"", "No such layout"}),
            (std::vector<SessionLayout>{{"", {}}, {"", {}}}));
  EXPECT_TRUE(sessionLayouts(rules("us,ru", ""), {}).empty());
}

}  // namespace
}  // namespace kivra
