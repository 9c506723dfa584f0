// Keys that hands hold: triggers, repeats, modifiers, two keyboards.

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/events.h"
#include "platform/guard/keyboard_guard_fixture.h"

namespace kivra::guard {
namespace {

TEST_F(KeyboardGuardTest, RepeatsThatTheProgramHasNotSeenOvertakeAPost) {
  bench.press(letterKey);
  bench.repeat(letterKey);
  const auto number = bench.reports().back().number;
  bench.repeat(letterKey);
  bench.post(number, Posted().erase(2));
  EXPECT_EQ(bench.screen.text(), "ggg");
}

TEST_F(KeyboardGuardTest, ATriggerThatIsHeldStaysDownBehindItsScriptAndRepeats) {
  bench.verdict(typeWord("ghbdtn"), true, correction("ghbdtn"));
  EXPECT_TRUE(bench.screen.down().test(KEY_SPACE));
  bench.repeat(KEY_SPACE);
  bench.repeat(KEY_SPACE);
  EXPECT_EQ(bench.screen.text(), "привет   ");
  EXPECT_EQ(kinds(), std::vector{ReportKind::wordBroken}) << "once";
  bench.release(KEY_SPACE);
  EXPECT_EQ(bench.screen.down().count(), 0U);
  EXPECT_EQ(bench.screen.faults(), 0);
}

TEST_F(KeyboardGuardTest, RepeatsOfWhatDoesNotGoOnDoNotGoOnEither) {
  // A consumed hotkey, and a letter that a script has let go of.
  bench.press(letterKey);
  const auto number = typeWord("");
  bench.verdict(number, true, Posted().letters("x"));
  bench.reports();
  bench.repeat(KEY_SPACE);
  bench.repeat(letterKey);
  EXPECT_EQ(bench.screen.text(), "gx");
  EXPECT_EQ(kinds(), std::vector<ReportKind>{}) << "the word is what it was";
  bench.release(letterKey);
  bench.release(KEY_SPACE);
  EXPECT_EQ(bench.screen.down().count(), 0U);
  EXPECT_EQ(bench.screen.faults(), 0);
}

TEST_F(KeyboardGuardTest, KeysThatAScriptLetsGoOfAreSwallowedLaterAndShiftIsPressedAgain) {
  bench.press(KEY_A);
  bench.press(KEY_LEFTSHIFT);
  bench.press(KEY_SPACE);
  bench.verdict(bench.reports().back().number, true, Posted().erase(1).letters("b"));
  EXPECT_EQ(bench.screen.text(), "b") << "without the hands' Shift";
  EXPECT_FALSE(bench.screen.down().test(KEY_A));
  EXPECT_TRUE(bench.screen.down().test(KEY_LEFTSHIFT));
  bench.release(KEY_A);
  bench.release(KEY_SPACE);
  bench.tap(KEY_C);
  bench.release(KEY_LEFTSHIFT);
  EXPECT_EQ(bench.screen.text(), "bC");
  EXPECT_EQ(bench.screen.faults(), 0);
}

TEST_F(KeyboardGuardTest, ModifiersTappedAloneAwaitAVerdictAndOthersDoNot) {
  bench.press(KEY_LEFTSHIFT);
  bench.type("a");
  bench.release(KEY_LEFTSHIFT);
  for (const auto& report : bench.reports()) EXPECT_EQ(report.awaitsVerdict, 0);
  bench.tap(KEY_LEFTSHIFT);
  bench.type("b");
  const auto tap = bench.reports().back();
  EXPECT_EQ(tap.kind, ReportKind::flagsChanged);
  EXPECT_NE(tap.awaitsVerdict, 0);
  bench.verdict(tap.number, false, Posted().erase(1));
  EXPECT_EQ(bench.screen.text(), "b") << "the undo stands before the next key";
  // Two held together, let go of in the order of pressing: it is the first that means something.
  bench.reports();
  bench.press(KEY_LEFTCTRL);
  bench.press(KEY_LEFTSHIFT);
  bench.release(KEY_LEFTCTRL);
  EXPECT_NE(bench.reports().back().awaitsVerdict, 0);
}

TEST_F(KeyboardGuardTest, TheFirstOfTwoKeyboardsToPressAKeyCountsAndTheLastToLetGo) {
  bench.press(KEY_LEFTSHIFT);
  bench.press(KEY_LEFTSHIFT);
  bench.release(KEY_LEFTSHIFT);
  bench.verdict(bench.reports().back().number, false);
  bench.press(KEY_A);
  bench.press(KEY_A);
  bench.release(KEY_A);
  bench.release(KEY_A);
  EXPECT_EQ(bench.screen.text(), "A");
  bench.release(KEY_LEFTSHIFT);
  EXPECT_EQ(bench.screen.down().count(), 0U);
  EXPECT_EQ(bench.screen.faults(), 0);
  const auto reports = bench.reports();
  EXPECT_EQ(std::ranges::count(reports, ReportKind::keyDown, &Report::kind), 1);
}

TEST_F(KeyboardGuardTest, KeysHeldSinceBeforeTheGuardAreLetGoOf) {
  bench.screen.press(KEY_A);
  bench.release(KEY_A);
  EXPECT_EQ(bench.screen.down().count(), 0U);
  EXPECT_EQ(bench.screen.faults(), 0);
}

TEST_F(KeyboardGuardTest, KeysThatNoMapKnowsPassInOrder) {
  constexpr std::uint16_t macroKey = KEY_MACRO1;
  static_assert(macroKey >= KeyMap::keyLimit);
  const auto number = typeWord("a");
  bench.press(macroKey);
  EXPECT_FALSE(bench.screen.down().test(macroKey));
  bench.verdict(number, false);
  EXPECT_TRUE(bench.screen.down().test(macroKey));
  bench.release(macroKey);
  EXPECT_EQ(bench.screen.down().count(), 1U) << "Space";
}

}  // namespace
}  // namespace kivra::guard
