// More than the rules, by the user's choice, typed by hand into a window.

#include <gtest/gtest.h>

#include <string>

#include "kivra_session.h"

namespace kivra::e2e {
namespace {

TEST(ExtendedRules, MarksCapitalsAndAnUndoOverWhatWasTypedSince) {
  KivraSession desktop;
  desktop.session.run({KIVRA_DEFAULTS, "write", "kivra.extendedRules", "-bool", "true"});
  desktop.session.stopKivra();
  desktop.startKivra();
  const auto typed = [&](const char* keys, const std::string& expected) {
    desktop.typist.type(keys);
    EXPECT_EQ(desktop.window.textAfter(expected), expected) << desktop.session.kivraLog();
  };
  typed("ghbdtn? ", "привет, ");
  typed("people, ", "привет, people, ");
  desktop.typist.selectGroup(1);
  typed("don't ", "привет, people, don't ");
  typed("GHbdtn vbh ", "привет, people, don't Привет мир ");
  desktop.typist.tap(keys::shift);
  desktop.typist.tap(keys::shift);
  typed("", "привет, people, don't GHbdtn мир ");
}

}  // namespace
}  // namespace kivra::e2e
