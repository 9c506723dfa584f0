// What the program hears in GNOME Shell, and does not hear, when the focus moves and where secrets
// are typed.

#include <gtest/gtest.h>

#include "guarded_gnome.h"
#include "guarded_session.h"

namespace kivra::e2e {
namespace {

using guard::ReportKind;

// The shell tells its input method of no other secrets.
TEST(GnomeFocus, APasswordIsTypedAndNothingIsReported) {
  constexpr std::uint32_t password = 8;
  GuardedGnome session({.purpose = password});
  auto& program = session.startUnheard();
  ASSERT_TRUE(program.settleInSecret());
  program.clear();
  session.hand.type("ghbdtn vbh ");
  EXPECT_EQ(session.window.textAfter("ghbdtn vbh "), "ghbdtn vbh ");
  EXPECT_TRUE(program.reports().empty());
}

TEST(GnomeFocus, AWordThatIsBegunInOneWindowIsNotEndedInAnother) {
  GuardedGnome session;
  auto& program = session.start();
  session.hand.type("ghb");
  ASSERT_EQ(session.window.textAfter("ghb"), "ghb");
  program.clear();
  const TextWindow second(TextWindow::Content{});
  ASSERT_TRUE(waitFor([&] { return program.count(ReportKind::wordBroken) > 0; }));
  session.hand.type("dtn ");
  EXPECT_EQ(second.textAfter(typedIn(1, "dtn ")), typedIn(1, "dtn "));
}

TEST(GnomeFocus, WhatTheShellItselfReadsIsNotReported) {
  GuardedGnome session;
  auto& program = session.start();
  session.gnome.showOverview(true);
  ASSERT_TRUE(program.settleInSecret());
  program.clear();
  session.hand.type("ghbdtn ");
  ASSERT_TRUE(program.settleInSecret());
  EXPECT_EQ(program.count(ReportKind::keyDown), 0);
}

}  // namespace
}  // namespace kivra::e2e
