// What the program hears, and does not hear, when the focus moves and where secrets are typed.

#include <gtest/gtest.h>

#include <csignal>
#include <cstddef>

#include "guarded_session.h"
#include "x_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;
using guard::ReportKind;

class SecretField : public testing::TestWithParam<TextWindow::Content> {};

INSTANTIATE_TEST_SUITE_P(Fields, SecretField,
                         testing::Values(TextWindow::Content{.purpose = 8},
                                         TextWindow::Content{.purpose = 9},
                                         TextWindow::Content{.hints = 0x40},
                                         TextWindow::Content{.hints = 0x80}));

TEST_P(SecretField, IsTypedIntoAndNothingIsReported) {
  GuardedSession session({}, GetParam());
  auto& program = session.startUnheard();
  ASSERT_TRUE(program.settleInSecret());
  program.clear();
  session.hand.type("ghbdtn vbh ");
  EXPECT_EQ(session.window.textAfter("ghbdtn vbh "), "ghbdtn vbh ");
  EXPECT_TRUE(program.reports().empty());
}

TEST(GuardedFocus, AnOrdinaryFieldIsCorrected) {
  GuardedSession session({}, TextWindow::Content{.hints = 0x3, .purpose = 0});
  session.start();
  session.hand.type("ghbdtn ");
  EXPECT_EQ(session.window.textAfter("привет "), "привет ");
}

TEST(GuardedFocus, AWordThatIsBegunInOneWindowIsNotEndedInAnother) {
  GuardedSession session;
  auto& program = session.start();
  session.hand.type("ghb");
  ASSERT_EQ(session.window.textAfter("ghb"), "ghb");
  program.clear();
  {
    const TextWindow second;
    ASSERT_TRUE(waitFor([&] { return program.count(ReportKind::wordBroken) > 0; }));
    session.hand.type("dtn ");
    EXPECT_EQ(second.textAfter(typedIn(1, "dtn ")), typedIn(1, "dtn "));
    program.clear();
  }
  ASSERT_TRUE(waitFor([&] { return program.count(ReportKind::wordBroken) > 0; }));
  session.hand.type("ghbdtn ");
  EXPECT_EQ(session.window.textAfter("ghbпривет "), "ghbпривет ");
}

TEST(GuardedFocus, FromAPasswordToAnotherWindowTheProgramHearsAgain) {
  GuardedSession session({}, TextWindow::Content{.purpose = 8});
  auto& program = session.startUnheard();
  ASSERT_TRUE(program.settleInSecret());
  session.hand.type("ghbdtn ");
  ASSERT_EQ(session.window.textAfter("ghbdtn "), "ghbdtn ");
  program.clear();
  const TextWindow second;
  ASSERT_TRUE(waitFor([&] { return program.count(ReportKind::wordBroken) > 0; }));
  session.hand.type("ghbdtn ");
  EXPECT_EQ(second.textAfter("привет "), "привет ");
}

/// Types where nothing may be heard of it.
void expectNothingHeard(GuardedSession& session) {
  auto& program = *session.program;
  ASSERT_TRUE(program.settleInSecret());
  program.clear();
  session.hand.type("ghbdtn vbh ");
  session.hand.settle();
  ASSERT_TRUE(program.settleInSecret());
  EXPECT_EQ(program.reports().size(), static_cast<std::size_t>(program.count(ReportKind::refused)));
  program.clear();
}

TEST(GuardedFocus, WhereNoWindowIsActiveNothingIsReported) {
  GuardedSession session;
  auto& program = session.start();
  session.sway.message({"workspace", "2"});
  expectNothingHeard(session);
  session.sway.message({"workspace", "1"});
  ASSERT_TRUE(waitFor([&] { return program.count(ReportKind::wordBroken) > 0; }));
  session.hand.type("ghbdtn ");
  EXPECT_EQ(session.window.textAfter("привет "), "привет ");
}

TEST(GuardedFocus, WhatIsTypedAtTheLockScreenIsNotReported) {
  GuardedSession session;
  auto& program = session.start();
  auto lock = session.sway.start({"swaylock", "--debug"}, "lock.log");
  ASSERT_TRUE(waitFor([&] { return !session.window.hasFocus(); }));
  expectNothingHeard(session);
  lock->signal(SIGUSR1);
  ASSERT_TRUE(lock->wait(5s)) << session.sway.readFile("lock.log");
  ASSERT_TRUE(waitFor([&] { return session.window.hasFocus(); }));
  ASSERT_TRUE(waitFor([&] { return program.count(ReportKind::wordBroken) > 0; }));
  session.hand.type("ghbdtn ");
  EXPECT_EQ(session.window.textAfter("привет "), "привет ");
}

}  // namespace
}  // namespace kivra::e2e
