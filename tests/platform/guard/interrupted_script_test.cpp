// Scripts that pause, and what comes in between: keys, the focus, secrecy, the end.

#include <gtest/gtest.h>

#include "platform/events.h"
#include "platform/guard/keyboard_guard_fixture.h"

namespace kivra::guard {
namespace {

using namespace std::chrono_literals;

TEST_F(KeyboardGuardTest, KeysWaitWhileAScriptPauses) {
  const auto number = typeWord("ghbdtn");
  bench.verdict(number, true, correction("ghbdtn", 20));
  bench.release(KEY_SPACE);
  bench.type("v");
  EXPECT_EQ(bench.screen.text(), "");
  bench.pass(19ms);
  EXPECT_EQ(bench.screen.text(), "");
  bench.pass(1ms);
  EXPECT_EQ(bench.screen.text(), "привет м");
  EXPECT_EQ(bench.screen.down().count(), 0U);
}

TEST_F(KeyboardGuardTest, NothingComesInBetweenWhenAScriptPausesDuringADecision) {
  bench.type("ab");
  const auto seen = bench.reports().back().number;
  bench.press(KEY_SPACE);
  const auto space = bench.reports().back().number;
  bench.post(seen, Posted().erase(2).pause(20).letters("cd"));
  bench.verdict(space, false);
  bench.release(KEY_SPACE);
  EXPECT_EQ(bench.screen.text(), "");
  bench.pass(20ms);
  EXPECT_EQ(bench.screen.text(), "cd ");
}

TEST_F(KeyboardGuardTest, AFocusThatMovesInAPauseEndsTheScriptAndModifiersComeBack) {
  bench.type("ghbdtn");
  bench.press(KEY_LEFTSHIFT);
  const auto number = typeWord("");
  bench.verdict(number, true, correction("ghbdtn", 20));
  EXPECT_FALSE(bench.screen.down().test(KEY_LEFTSHIFT));
  bench.release(KEY_SPACE);
  bench.moveFocus();
  bench.tap(KEY_A);
  EXPECT_EQ(bench.screen.text(), "A");
  EXPECT_TRUE(bench.screen.down().test(KEY_LEFTSHIFT));
  bench.release(KEY_LEFTSHIFT);
  bench.pass(1s);
  EXPECT_EQ(bench.screen.text(), "A");
  EXPECT_EQ(bench.screen.down().count(), 0U);
  EXPECT_EQ(kinds().front(), ReportKind::refused);
}

TEST_F(KeyboardGuardTest, NoPauseHoldsTheKeyboardForLong) {
  bench.post(0, Posted().pause(4'000'000'000).letters("b"));
  bench.type("a");
  bench.pass(ScriptPlayer::longestPause);
  EXPECT_EQ(bench.screen.text(), "ba");
}

TEST_F(KeyboardGuardTest, CharactersApartFromKeysComeOnceTheKeysHaveHadTheirTime) {
  bench.seat.characterPause = 20ms;
  bench.type("ab");
  bench.post(0, Posted().erase(2).letters("c").character(0x436).character('d').character(0x44F));
  bench.type("e");
  EXPECT_EQ(bench.screen.text(), "c");
  bench.pass(20ms);
  EXPECT_EQ(bench.screen.text(), "cжdяe") << "all of them after one pause";
}

TEST_F(KeyboardGuardTest, InSecrecyKeysPassUntoldAndNothingIsTyped) {
  const auto number = typeWord("ab");
  bench.type("c");
  bench.setSecret(true);
  EXPECT_EQ(bench.screen.text(), "ab c") << "at once";
  bench.verdict(number, true, correction("ab"));
  bench.post(0, Posted().letters("x"));
  bench.release(KEY_SPACE);
  bench.type("d ");
  EXPECT_EQ(bench.screen.text(), "ab cd ");
  EXPECT_EQ(kinds(), (std::vector{ReportKind::refused, ReportKind::refused}));
  bench.setSecret(false);
  bench.type("e");
  EXPECT_EQ(kinds(), (std::vector{ReportKind::wordBroken, ReportKind::keyDown}));
}

TEST_F(KeyboardGuardTest, SecrecyEndsAScriptInItsPause) {
  bench.verdict(typeWord("ab"), true, correction("ab", 20));
  bench.setSecret(true);
  bench.pass(1s);
  EXPECT_EQ(bench.screen.text(), "");
  EXPECT_EQ(kinds(), std::vector{ReportKind::refused});
}

TEST_F(KeyboardGuardTest, WhenItEndsAllThatWaitsGoesOnInOrder) {
  typeWord("ab");
  bench.type("c");
  bench.press(KEY_LEFTSHIFT);
  bench.type("d");
  bench.hangUp();
  bench.serve();
  EXPECT_FALSE(bench.channel->isOpen());
  bench.guard.letGo();
  EXPECT_EQ(bench.screen.text(), "ab cD");
}

TEST_F(KeyboardGuardTest, WhenItEndsInAPauseTheErasedWordIsTyped) {
  bench.verdict(typeWord("ghbdtn"), true, correction("ghbdtn", 20));
  bench.type("v");
  bench.hangUp();
  bench.serve();
  bench.guard.letGo();
  EXPECT_EQ(bench.screen.text(), "привет м");
}

TEST_F(KeyboardGuardTest, ASeatThatGoesAwayIsTold) {
  EXPECT_TRUE(bench.serve());
  bench.seat.vanish();
  EXPECT_FALSE(bench.serve());
}

}  // namespace
}  // namespace kivra::guard
