// Decisions and posts, in time and late, seen at the application.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "platform/events.h"
#include "platform/guard/keyboard_guard_fixture.h"

namespace kivra::guard {
namespace {

using namespace std::chrono_literals;

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

TEST_F(KeyboardGuardTest, TellsOnceThatAKeyboardIsMissingOrBusy) {
  for (int times = 0; times < 2; ++times) {
    bench.guard.keyboardBusy();
    bench.guard.keyboardMissing();
  }
  EXPECT_EQ(kinds(), (std::vector{ReportKind::keyboardBusy, ReportKind::noKeyboard}));
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
