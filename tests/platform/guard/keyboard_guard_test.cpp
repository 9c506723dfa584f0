// What the guard does with keys, orders and time, seen at the application.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "platform/events.h"
#include "platform/guard/guard_bench.h"

namespace kivra::guard {
namespace {

using namespace std::chrono_literals;

constexpr std::uint16_t letterKey = KEY_G;

/// The code of a key that means nothing to the program.
constexpr std::uint16_t noKeyOfTheProgram = 0xFFFF;

class KeyboardGuardTest : public testing::Test {
 protected:
  void SetUp() override { bench.enable(spaces()); }

  /// Types a word and Space, which waits then; answers the number of its event.
  std::uint32_t typeWord(std::string_view letters) {
    bench.type(letters);
    bench.press(KEY_SPACE);
    const auto reports = bench.reports();
    EXPECT_TRUE(!reports.empty() && reports.back().awaitsVerdict != 0);
    return reports.empty() ? 0 : reports.back().number;
  }

  /// The word in the other layout.
  static Posted correction(std::string_view letters, std::uint32_t pause = 0) {
    Posted posted;
    posted.erase(letters.size());
    if (pause > 0) posted.pause(pause);
    return posted.group(1).letters(letters).key(KEY_SPACE);
  }

  std::vector<ReportKind> kinds() {
    std::vector<ReportKind> kinds;
    for (const auto& report : bench.reports()) kinds.push_back(report.kind);
    return kinds;
  }

  GuardBench bench;
};

TEST_F(KeyboardGuardTest, KeysWaitBehindADecisionAndFollowItsScript) {
  const auto number = typeWord("ghbdtn");
  bench.release(KEY_SPACE);
  bench.type("vbh");
  EXPECT_EQ(bench.screen.text(), "ghbdtn");
  EXPECT_EQ(bench.report(), std::nullopt) << "what waits has not been reported";
  bench.verdict(number, true, correction("ghbdtn"));
  EXPECT_EQ(bench.screen.text(), "привет мир");
  EXPECT_EQ(bench.screen.down().count(), 0U);
  EXPECT_EQ(bench.screen.faults(), 0);
  const auto reports = bench.reports();
  ASSERT_EQ(reports.size(), 3U);
  EXPECT_EQ(reports[0].group, 1U) << "the layout as the key meets it";
}

TEST_F(KeyboardGuardTest, WithoutConsumptionTheKeyPassesBeforeWhatIsPosted) {
  bench.verdict(typeWord("a"), false);
  EXPECT_EQ(bench.screen.text(), "a ");
  bench.release(KEY_SPACE);
  bench.verdict(typeWord("b"), false, Posted().letters("c"));
  EXPECT_EQ(bench.screen.text(), "a b c");
  bench.release(KEY_SPACE);
  EXPECT_EQ(bench.screen.faults(), 0);
}

TEST_F(KeyboardGuardTest, WithoutVerdictInTimeTheKeyPassesAndTheTapIsOff) {
  const auto number = typeWord("ghbdtn");
  bench.type("v");
  bench.pass(KeyboardGuard::decisionTime - 1ms);
  EXPECT_EQ(bench.screen.text(), "ghbdtn");
  bench.pass(1ms);
  EXPECT_EQ(bench.screen.text(), "ghbdtn v");
  EXPECT_EQ(kinds(), std::vector{ReportKind::timedOut});
  bench.release(KEY_SPACE);
  bench.type("b ");
  EXPECT_EQ(bench.screen.text(), "ghbdtn vb ") << "no key waits now";
  bench.verdict(number, true, correction("ghbdtn"));
  EXPECT_EQ(bench.screen.text(), "ghbdtn vb ");
  const auto refused = bench.reports();
  ASSERT_EQ(refused.size(), 1U);
  EXPECT_EQ(refused[0].kind, ReportKind::refused);
  EXPECT_EQ(refused[0].number, number);
  bench.order({.kind = OrderKind::enable});
  EXPECT_EQ(kinds(), std::vector{ReportKind::wordBroken});
}

TEST_F(KeyboardGuardTest, AWordThatTheProgramKnowsInPartIsNotMended) {
  typeWord("a");
  bench.type("b");
  bench.pass(KeyboardGuard::decisionTime);
  bench.order({.kind = OrderKind::enable});
  bench.reports();
  bench.release(KEY_SPACE);
  bench.type("c");
  EXPECT_EQ(bench.reports().back().keyCode, noKeyOfTheProgram) << "b has passed untold";
  bench.press(KEY_SPACE);
  bench.verdict(bench.reports().back().number, false);
  bench.release(KEY_SPACE);
  bench.type("d");
  EXPECT_NE(bench.reports().back().keyCode, noKeyOfTheProgram) << "a new word";
}

TEST_F(KeyboardGuardTest, TheTimeToDecideBeginsWithTheKeyHoweverLongTheRestWas) {
  bench.pass(10h);
  bench.now += 10h;
  typeWord("a");
  EXPECT_EQ(bench.guard.deadline(), bench.now + KeyboardGuard::decisionTime);
}

TEST_F(KeyboardGuardTest, ATapThatIsSwitchedOffAnswersNoMore) {
  typeWord("a");
  bench.type("b");
  bench.order({.kind = OrderKind::disable});
  EXPECT_EQ(bench.screen.text(), "a b");
  EXPECT_EQ(kinds(), std::vector<ReportKind>{}) << "nobody has been late";
}

TEST_F(KeyboardGuardTest, APostThatKeysHaveOvertakenIsRefused) {
  bench.type("a");
  const auto number = bench.reports().back().number;
  bench.post(number, Posted().letters("b"));
  EXPECT_EQ(bench.screen.text(), "ab");
  bench.type("c");
  bench.post(number, Posted().erase(2));
  EXPECT_EQ(bench.screen.text(), "abc");
  const auto reports = bench.reports();
  EXPECT_EQ(reports.back().kind, ReportKind::refused);
  EXPECT_EQ(reports.back().number, number);
  bench.post(0, Posted().letters("d"));
  EXPECT_EQ(bench.screen.text(), "abcd") << "it fits anywhere";
}

// Each of them, between what the program has seen and what it posts for that.
TEST_F(KeyboardGuardTest, APostIsOvertakenByAllThatChangesTheText) {
  const std::function<void()> changes[] = {
      [this] { bench.moveFocus(); },
      [this] { bench.click(); },
      [this] { bench.foreignKey(); },
      [this] {
        bench.setSecret(true);
        bench.type("s");
        bench.setSecret(false);
      },
      [this] {
        bench.press(letterKey);
        bench.repeat(letterKey);
        bench.reports();
        bench.repeat(letterKey);
        bench.release(letterKey);
      },
      [this] {
        bench.order({.kind = OrderKind::disable});
        bench.type("x");
        bench.order({.kind = OrderKind::enable});
      },
  };
  for (const auto& change : changes) {
    bench.type("a");
    const auto number = bench.reports().back().number;
    change();
    const auto before = bench.screen.text();
    bench.reports();
    bench.post(number, Posted().erase(1));
    EXPECT_EQ(bench.screen.text(), before) << &change - changes;
    EXPECT_EQ(kinds(), std::vector{ReportKind::refused}) << &change - changes;
  }
}

TEST_F(KeyboardGuardTest, RepeatsThatTheProgramHasNotSeenOvertakeAPost) {
  bench.press(letterKey);
  bench.repeat(letterKey);
  const auto number = bench.reports().back().number;
  bench.repeat(letterKey);
  bench.post(number, Posted().erase(2));
  EXPECT_EQ(bench.screen.text(), "ggg");
}

TEST_F(KeyboardGuardTest, WhatMovesTheCursorDuringADecisionKeepsTheScriptFromTheWrongPlace) {
  const std::function<void()> moves[] = {[this] { bench.moveFocus(); }, [this] { bench.click(); },
                                         [this] { bench.foreignKey(); }};
  for (const auto& move : moves) {
    const auto before = bench.screen.text();
    const auto number = typeWord("ab");
    move();
    bench.verdict(number, true, correction("ab"));
    EXPECT_EQ(bench.screen.text(), before + "ab ") << "the Space is not lost";
    bench.release(KEY_SPACE);
    const auto told = kinds();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0], ReportKind::refused);
    EXPECT_NE(told[1], ReportKind::refused);
  }
  EXPECT_EQ(bench.screen.faults(), 0);
}

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

TEST_F(KeyboardGuardTest, AProgramThatStopsReadingIsToldLaterThatTheTapIsOff) {
  // Letters alone, far more than socket and backlog take.
  for (int i = 0; i < 25'000; ++i) bench.tap(letterKey);
  EXPECT_EQ(bench.screen.characters().size(), 25'000U);
  bench.press(KEY_SPACE);
  EXPECT_EQ(bench.guard.deadline(), std::nullopt) << "nobody is asked";
  bench.release(KEY_SPACE);
  std::vector<Report> reports;
  for (auto some = bench.reports(); !some.empty(); some = bench.reports()) {
    reports.insert(reports.end(), some.begin(), some.end());
    bench.channel->flush();
    bench.serve();
  }
  EXPECT_EQ(reports.back().kind, ReportKind::timedOut);
  EXPECT_EQ(std::ranges::count(reports, ReportKind::timedOut, &Report::kind), 1);
  for (std::size_t i = 1; i + 1 < reports.size(); ++i) {
    ASSERT_EQ(reports[i].number, reports[i - 1].number + 1) << "none is left out";
  }
}

TEST_F(KeyboardGuardTest, AMachineThatTypesIsNotKeptWaiting) {
  const auto number = typeWord("a");
  bench.release(KEY_SPACE);
  for (int i = 0; i < 60; ++i) bench.type("bcde ");
  bench.verdict(number, false);
  const auto reports = bench.reports();
  const auto unasked = std::ranges::count(reports, noKeyOfTheProgram, &Report::keyCode);
  EXPECT_GT(unasked, 10) << "Spaces passed, and end their words";
  EXPECT_NE(reports.back().awaitsVerdict, 0) << "the last ones are asked about again";
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

TEST_F(KeyboardGuardTest, ALongOrderComesInParts) {
  bench.send(FrameKind::postedKeys, {.kind = OrderKind::post, .more = 1}, Posted().letters("a"));
  bench.serve();
  EXPECT_EQ(bench.screen.text(), "");
  bench.send(FrameKind::postedKeys, {.kind = OrderKind::post, .more = 1}, Posted().letters("b"));
  bench.post(0, Posted().letters("c"));
  EXPECT_EQ(bench.screen.text(), "abc");
}

}  // namespace
}  // namespace kivra::guard
