// The guard as KWin's input method.

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <csignal>

#include "guarded_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;
using guard::ReportKind;

TEST(KwinTyping, ModifiersLocksAndLayoutsAreThoseOfTheHands) {
  KwinSession session;
  auto& hand = session.hand;
  hand.press(KEY_LEFTSHIFT);
  hand.type("ab");
  hand.release(KEY_LEFTSHIFT);
  hand.tap(KEY_CAPSLOCK);
  hand.type("cd");
  hand.tap(KEY_CAPSLOCK);
  hand.type("ef");
  EXPECT_EQ(session.window.textAfter("ABCDef"), "ABCDef");
  EXPECT_TRUE(waitFor([&] { return !session.window.isAnyKeyDown(); }));
}

// KWin keeps one state for the hands and for what the guard sends, each late for the other.
TEST(KwinTyping, LocksAndShiftAreRightHoweverFastTheyAreTyped) {
  KwinSession session;
  auto& hand = session.hand;
  constexpr Pace burst{.key = 0us, .hold = 0us};
  std::string expected;
  for (int i = 0; i < 50; ++i) {
    hand.tap(KEY_CAPSLOCK);
    hand.type("ab", burst);
    hand.tap(KEY_CAPSLOCK);
    hand.type("c", burst);
    hand.press(KEY_LEFTSHIFT);
    hand.type("d", burst);
    hand.release(KEY_LEFTSHIFT);
    expected += "ABcD";
    // KWin ends clients that have not read some hundred keys.
    if (i % 5 == 0) {
      ASSERT_EQ(session.window.textAfter(expected), expected);
    }
  }
  EXPECT_EQ(session.window.textAfter(expected), expected);
}

// KWin tells applications of Shift when it is pressed, while the keys before it still wait.
TEST(KwinTyping, AShiftPressedWhileKeysWaitDoesNotReachThem) {
  KwinSession session;
  session.program.stopAnswering();
  auto& hand = session.hand;
  hand.type(" ab");
  hand.press(KEY_LEFTSHIFT);
  hand.type("c");
  hand.release(KEY_LEFTSHIFT);
  hand.type("d");
  EXPECT_EQ(session.window.textAfter(" abCd"), " abCd");
}

TEST(KwinTyping, WhatIsHeldLockedAndSelectedBeforeAFieldCountsInIt) {
  const KwinServer kwin;
  const ScriptedProgram program(kwin.acceptGuard());
  Hand hand;
  const TextWindow other;
  kwin.selectLayout(1);
  hand.tap(KEY_CAPSLOCK);
  hand.press(KEY_LEFTSHIFT);
  const TextWindow field{TextWindow::Content()};
  ASSERT_TRUE(waitFor([&] { return program.count(ReportKind::wordBroken) > 0; }));
  hand.type("a");
  EXPECT_EQ(field.textAfter("ф"), "ф");
  hand.release(KEY_LEFTSHIFT);
  hand.type("a");
  EXPECT_EQ(field.textAfter("фФ"), "фФ");
}

TEST(KwinTyping, ALayoutThatTheDesktopSelectsIsThatOfTheNextKey) {
  KwinSession session;
  session.hand.type("a");
  ASSERT_EQ(session.window.textAfter("a"), "a");
  session.kwin.selectLayout(1);
  session.hand.type("a");
  ASSERT_EQ(session.window.textAfter("aф"), "aф");
  session.kwin.selectLayout(0);
  session.hand.type("a");
  ASSERT_EQ(session.window.textAfter("aфa"), "aфa");
  session.program.post({postedGroup(1)});
  session.program.post(postedTap(KEY_A));
  ASSERT_EQ(session.window.textAfter("aфaф"), "aфaф");
  session.kwin.selectLayout(0);
  session.hand.type("a");
  EXPECT_EQ(session.window.textAfter("aфaфa"), "aфaфa");
}

TEST(KwinTyping, CharactersThatNoLayoutHasAreTyped) {
  KwinSession session;
  session.hand.type("a");
  ASSERT_EQ(session.window.textAfter("a"), "a");
  session.program.post({postedCharacter(0x20AC), postedCharacter(0x2014)});
  ASSERT_EQ(session.window.textAfter("a€—"), "a€—");
  session.program.post(postedTap(KEY_B));
  EXPECT_EQ(session.window.textAfter("a€—b"), "a€—b");
}

class KwinEditor : public testing::TestWithParam<std::vector<std::string>> {};

INSTANTIATE_TEST_SUITE_P(Editors, KwinEditor,
                         testing::Values(std::vector<std::string>{"mousepad", "--disable-server"},
                                         std::vector<std::string>{KIVRA_QT_EDITOR}));

TEST_P(KwinEditor, TakesCharactersThatNoLayoutHasInTheirPlace) {
  const KwinServer kwin;
  ScriptedProgram program(kwin.acceptGuard());
  Hand hand;
  const ChildProcess editor(GetParam(), {.environment = kwin.environment()});
  ASSERT_TRUE(waitFor([&] { return program.count(ReportKind::wordBroken) > 0; }, 20s));
  program.replaceWordsBy({postedCharacter(0x20AC), postedCharacter(0x2014)});
  const auto text = [&] {
    hand.press(KEY_LEFTCTRL);
    hand.type("ac");
    hand.release(KEY_LEFTCTRL);
    return outputOf({"timeout", "2", "wl-paste", "-n"}, kwin.environment());
  };
  // It may put the focus elsewhere at first, and words are typed into nowhere.
  ASSERT_TRUE(waitFor(
      [&] {
        hand.type("abc ");
        return text().ends_with("€— ");
      },
      20s));
  hand.type("abc def abc ");
  EXPECT_TRUE(waitFor([&] { return text() == "€— €— €— "; })) << text();
}

TEST(KwinTyping, NothingIsReportedOfAPassword) {
  KwinSession session({.hints = 0x40});
  ASSERT_TRUE(session.program.settleInSecret());
  session.program.clear();
  session.hand.type("ghbdtn ");
  EXPECT_EQ(session.window.textAfter("ghbdtn "), "ghbdtn ");
  EXPECT_TRUE(session.program.reports().empty());
}

TEST(KwinTyping, TheNextGuardServesWhenOneHasBeenKilled) {
  KwinSession session;
  auto& hand = session.hand;
  hand.press(KEY_LEFTSHIFT);
  hand.press(KEY_A);
  ASSERT_EQ(session.window.textAfter("A"), "A");
  ::kill(session.program.guardPid(), SIGKILL);
  ScriptedProgram next(session.kwin.acceptGuard());
  ASSERT_TRUE(waitFor([&] { return next.count(ReportKind::wordBroken) > 0; }));
  hand.release(KEY_A);
  hand.release(KEY_LEFTSHIFT);
  hand.type(" ghbdtn ");
  EXPECT_EQ(session.window.textAfter("A привет "), "A привет ");
  EXPECT_TRUE(waitFor([&] { return !session.window.isAnyKeyDown(); }));
}

}  // namespace
}  // namespace kivra::e2e
