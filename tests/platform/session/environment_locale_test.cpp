#include "platform/session/environment_locale.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace kivra {
namespace {

using Languages = std::vector<std::string>;

class EnvironmentLocaleTest : public testing::Test {
 protected:
  /// Values of LANGUAGE, LC_ALL, LC_MESSAGES and LANG; null: not set.
  static Languages preferred(const char* language, const char* all, const char* messages,
                             const char* lang) {
    set("LANGUAGE", language);
    set("LC_ALL", all);
    set("LC_MESSAGES", messages);
    set("LANG", lang);
    return EnvironmentLocale().preferredLanguages();
  }

 private:
  static void set(const char* name, const char* value) {
    value == nullptr ? ::unsetenv(name) : ::setenv(name, value, 1);
  }
};

TEST_F(EnvironmentLocaleTest, TakesTheFirstVariableThatIsSet) {
  EXPECT_EQ(preferred(nullptr, nullptr, nullptr, "ru_RU.UTF-8"), (Languages{"ru-RU"}));
  EXPECT_EQ(preferred(nullptr, nullptr, "de_DE@euro", "ru_RU.UTF-8"), (Languages{"de-DE"}));
  EXPECT_EQ(preferred("", "uk", "de_DE", "ru_RU.UTF-8"), (Languages{"uk"}));
  EXPECT_EQ(preferred(nullptr, "", "", "en_US.utf8"), (Languages{"en-US"}));
  EXPECT_EQ(preferred(nullptr, nullptr, nullptr, nullptr), Languages{});
}

TEST_F(EnvironmentLocaleTest, PutsTheListFirst) {
  EXPECT_EQ(preferred("ru:en_GB::ru", nullptr, nullptr, "en_US.UTF-8"),
            (Languages{"ru", "en-GB", "en-US"}));
}

TEST_F(EnvironmentLocaleTest, HasNothingInTheLocaleWithoutLanguage) {
  EXPECT_EQ(preferred("ru", "C.UTF-8", nullptr, "ru_RU.UTF-8"), Languages{});
  EXPECT_EQ(preferred(nullptr, "POSIX", nullptr, nullptr), Languages{});
}

}  // namespace
}  // namespace kivra
