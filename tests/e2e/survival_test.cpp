// The user's keyboard outlives the program.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <functional>
#include <iostream>
#include <thread>

#include "kivra_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

long long millisecondsSince(Clock::time_point start) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

bool corrects(KivraSession& desktop) {
  desktop.typist.selectGroup(0);
  desktop.window.textWhenQuiet(100ms);
  desktop.window.clear();
  desktop.typist.type("ghbdtn ");
  return desktop.window.textAfter("привет ") == "привет ";
}

/// With the program stopped, the decision about Space stays open.
TEST(Survival, StoppedProgramLetsTheKeyPassInItsPlace) {
  KivraSession desktop;
  desktop.session.kivra().signal(SIGSTOP);
  const auto start = Clock::now();
  desktop.typist.type("ghbdtn vbh");
  EXPECT_EQ(desktop.window.textAfter("ghbdtn vbh"), "ghbdtn vbh");
  const auto frozen = millisecondsSince(start);
  std::cout << "[ FIGURES  ] stopped program: keyboard back after " << frozen << " ms\n";
  EXPECT_LT(frozen, 1000);
  const auto second = Clock::now();
  desktop.typist.type(" ghbdtn ");
  EXPECT_EQ(desktop.window.textAfter("ghbdtn vbh ghbdtn "), "ghbdtn vbh ghbdtn ");
  EXPECT_LT(millisecondsSince(second), 500) << "only the first key waits";
  desktop.session.kivra().signal(SIGCONT);
  EXPECT_TRUE(waitFor([&] { return corrects(desktop); }));
}

TEST(Survival, WordBegunWhileStoppedIsNotTouchedAfterwards) {
  KivraSession desktop;
  desktop.typist.type("gh");
  desktop.window.textAfter("gh");
  desktop.session.kivra().signal(SIGSTOP);
  desktop.typist.type(" a ");
  desktop.window.textAfter("gh a ");
  desktop.typist.type("bdtn");
  desktop.window.textAfter("gh a bdtn");
  desktop.session.kivra().signal(SIGCONT);
  desktop.typist.type(" ");
  EXPECT_EQ(desktop.window.textAfter("gh a bdtn "), "gh a bdtn ");
}

TEST(Survival, KilledProgramInTheMiddleOfADecisionLosesNoKey) {
  KivraSession desktop;
  desktop.session.kivra().signal(SIGSTOP);
  desktop.typist.type("ghbdtn vbh");
  const auto start = Clock::now();
  desktop.session.kivra().signal(SIGKILL);
  EXPECT_EQ(desktop.window.textAfter("ghbdtn vbh"), "ghbdtn vbh");
  const auto frozen = millisecondsSince(start);
  std::cout << "[ FIGURES  ] killed program: keyboard back after " << frozen << " ms\n";
  EXPECT_LT(frozen, 1000);
  EXPECT_TRUE(waitFor([&] { return !desktop.session.isKeyboardHeld(); }));
}

/// After a pause of so many seconds; in the longer one the program's watch over the guard sleeps.
class StoppedGuard : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Pauses, StoppedGuard, testing::Values(0, 4));

TEST_P(StoppedGuard, GoesOnWithWhatWasTypedMeanwhile) {
  KivraSession desktop;
  const auto guard = desktop.session.guardPid();
  ASSERT_GT(guard, 0);
  ASSERT_TRUE(corrects(desktop));
  desktop.typist.selectGroup(0);
  std::this_thread::sleep_for(std::chrono::seconds(GetParam()));
  desktop.window.clear();
  ::kill(guard, SIGSTOP);
  const auto start = Clock::now();
  desktop.typist.type("in the ");
  EXPECT_EQ(desktop.window.textAfter("in the "), "in the ");
  const auto frozen = millisecondsSince(start);
  std::cout << "[ FIGURES  ] stopped guard: keyboard back after " << frozen << " ms\n";
  EXPECT_LT(frozen, 1000);
  EXPECT_EQ(desktop.session.guardPid(), guard);
  EXPECT_TRUE(corrects(desktop));
}

void replaceGuard(KivraSession& desktop) {
  const auto guard = desktop.session.guardPid();
  ASSERT_GT(guard, 0);
  ::kill(guard, SIGKILL);
  EXPECT_TRUE(waitFor([&] {
    const auto next = desktop.session.guardPid();
    return next != 0 && next != guard && desktop.session.isKeyboardHeld();
  }));
}

TEST(Survival, KilledGuardIsReplaced) {
  KivraSession desktop;
  replaceGuard(desktop);
  EXPECT_TRUE(corrects(desktop));
}

void expectHeldKeysToComeUp(KivraSession& desktop, const std::function<void()>& meanwhile) {
  desktop.typist.press(keys::shift);
  desktop.typist.press(keys::a);
  meanwhile();
  desktop.typist.release(keys::a);
  desktop.typist.release(keys::shift);
  ASSERT_TRUE(waitFor([&] { return !desktop.typist.isAnyKeyDown(); }, 1s));
  desktop.window.textWhenQuiet(100ms);
  desktop.window.clear();
  desktop.typist.type("abc");
  EXPECT_EQ(desktop.window.textAfter("abc"), "abc");
}

TEST(Survival, KeysHeldWhileTheGuardIsReplacedComeUp) {
  KivraSession desktop;
  expectHeldKeysToComeUp(desktop, [&] { replaceGuard(desktop); });
}

TEST(Survival, KeysHeldWhileTheGuardStartsComeUp) {
  KivraSession desktop;
  desktop.session.stopKivra();
  expectHeldKeysToComeUp(desktop, [&] { desktop.session.startKivra(); });
}

TEST(Survival, KeyPressedRightBehindAnUndoComesBehindIt) {
  KivraSession desktop;
  desktop.typist.type("ghbdtn ");
  ASSERT_EQ(desktop.window.textAfter("привет "), "привет ");
  desktop.typist.setPace(0us, 0us);
  desktop.typist.tap(keys::shift);
  desktop.typist.tap(keys::shift);
  desktop.typist.tap(keys::space);
  EXPECT_EQ(desktop.window.textAfter("ghbdtn  "), "ghbdtn  ");
}

TEST(Survival, LostServerEndsAllWithAMessage) {
  XSession session;
  auto& kivra = session.startKivra();
  const std::array helpers = {session.watcherPid(), session.guardPid()};
  session.killServer();
  const auto isGone = [](pid_t process) { return ::kill(process, 0) != 0; };
  // A second, but for machines that are busy with other tests.
  EXPECT_TRUE(waitFor([&] { return std::ranges::all_of(helpers, isGone); }, 3s));
  EXPECT_EQ(kivra.wait(1s), 1);
  EXPECT_NE(session.kivraLog().find("связь с дисплеем потеряна, выходим"), std::string::npos);
}

TEST(Survival, TerminatedProgramLetsGoOfEverything) {
  KivraSession desktop;
  desktop.session.kivra().signal(SIGTERM);
  EXPECT_EQ(desktop.session.kivra().wait(5s), 0);
  EXPECT_TRUE(waitFor([&] { return !desktop.session.isKeyboardHeld(); }));
  desktop.typist.type("ghbdtn ");
  EXPECT_EQ(desktop.window.textAfter("ghbdtn "), "ghbdtn ");
}

}  // namespace
}  // namespace kivra::e2e
