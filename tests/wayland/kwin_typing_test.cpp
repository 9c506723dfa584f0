// The guard as KWin's input method.

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <csignal>
#include <iostream>

#include "guarded_session.h"
#include "kwin_server.h"
#include "wrong_words.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;
using guard::ReportKind;

struct KwinSession {
  explicit KwinSession(const TextWindow::Content& content = {}) : window(content) {
    waitFor([this] { return window.fieldEntries() > 0; });
  }

  KwinServer kwin;
  ScriptedProgram program{kwin.acceptGuard()};
  Hand hand;
  TextWindow window;
};

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

// KWin tells applications of Shift when it is pressed, while the keys before it still wait.
TEST(KwinTyping, AShiftPressedWhileKeysWaitDoesNotReachThem) {
  KwinSession session;
  ASSERT_TRUE(waitFor([&] { return session.program.count(ReportKind::wordBroken) > 0; }));
  session.program.stopAnswering();
  auto& hand = session.hand;
  hand.type(" ab");
  hand.press(KEY_LEFTSHIFT);
  hand.type("c");
  hand.release(KEY_LEFTSHIFT);
  hand.type("d");
  EXPECT_EQ(session.window.textAfter(" abCd"), " abCd");
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

TEST(KwinTyping, KeepsTheOrderAndCorrectsEachWord) {
  KwinSession session;
  ASSERT_TRUE(waitFor([&] { return session.program.count(ReportKind::wordBroken) > 0; }));
  const auto text = misplacedWords(50);
  const auto expected = typedIn(1, text);
  for (const auto key : {5ms, 10ms, 30ms}) {
    session.window.clear();
    session.hand.type(text, {.key = key, .hold = key * 3 / 2});
    const auto count = compareWords(session.window.textAfter(expected), expected);
    EXPECT_EQ(count.wrong, 0) << count.firstDifference;
    EXPECT_EQ(count.right, 50) << count.firstDifference;
    std::cout << "[ FIGURES  ] " << count.right << " of 50 words corrected\n";
  }
}

}  // namespace
}  // namespace kivra::e2e
