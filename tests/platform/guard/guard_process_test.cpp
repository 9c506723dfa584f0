// Guard and watcher as processes: what ends either, and that the keyboard is free then.

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <unistd.h>

#include <csignal>

#include "platform/guard/piped_display.h"
#include "platform/guard/process/guard_watcher.h"

namespace kivra::guard {
namespace {

using Clock = std::chrono::steady_clock;
using Presses = std::vector<std::uint16_t>;

class GuardProcessTest : public testing::Test {
 protected:
  void SetUp() override {
    sendRecord(pipes.program(), FrameKind::hello, Hello{});
    ASSERT_TRUE(pipes.await(ReportKind::ready));
    pipes.tap(KEY_A);
    ASSERT_EQ(pipes.presses(1), Presses{KEY_A});
  }

  /// Space waits for a verdict, and what is typed behind it.
  void typeBehindADecision() {
    ASSERT_TRUE(pipes.listenForSpace());
    pipes.tap(KEY_SPACE);
    pipes.tap(KEY_B);
    ASSERT_TRUE(pipes.await(ReportKind::keyDown));
  }

  GuardedPipes pipes;
};

TEST_F(GuardProcessTest, TheyAreASessionOfTheirOwnThatATerminalDoesNotReach) {
  EXPECT_EQ(::getsid(pipes.guard()), pipes.watcher());
  EXPECT_NE(::getsid(0), pipes.watcher());
  for (const auto signal : {SIGINT, SIGTERM, SIGHUP, SIGTSTP}) {
    ::kill(-pipes.watcher(), signal);
  }
  pipes.tap(KEY_B);
  EXPECT_EQ(pipes.presses(1), Presses{KEY_B});
}

TEST_F(GuardProcessTest, AStoppedGuardIsContinuedAndEndedWhenItIsStoppedAgain) {
  const auto stopped = Clock::now();
  ::kill(pipes.guard(), SIGSTOP);
  pipes.tap(KEY_B);
  EXPECT_EQ(pipes.presses(1), Presses{KEY_B}) << "typed while it was stopped";
  EXPECT_GE(Clock::now() - stopped, GuardWatcher::stoppedTime);
  ::kill(pipes.guard(), SIGSTOP);
  EXPECT_TRUE(pipes.haveEnded());
  EXPECT_TRUE(pipes.wereKeysLetGo());
  EXPECT_NE(::kill(pipes.guard(), 0), 0) << "no process is left";
}

TEST_F(GuardProcessTest, OneThatGoesOnAtOnceStays) {
  ::kill(pipes.guard(), SIGSTOP);
  ::kill(pipes.guard(), SIGCONT);
  pipes.tap(KEY_B);
  EXPECT_EQ(pipes.presses(1), Presses{KEY_B});
  EXPECT_EQ(::kill(pipes.guard(), 0), 0);
}

TEST_F(GuardProcessTest, AGuardThatHangsIsEndedAndItsKeysAreLetGoOf) {
  const auto begin = Clock::now();
  pipes.send(GuardedPipes::Input::hang);
  EXPECT_TRUE(pipes.haveEnded());
  EXPECT_TRUE(pipes.wereKeysLetGo());
  EXPECT_GE(Clock::now() - begin, GuardWatcher::hungTime);
}

TEST_F(GuardProcessTest, KeysAreLetGoOfAfterAGuardThatIsKilledOrEndsByItself) {
  ::kill(pipes.guard(), SIGKILL);
  EXPECT_TRUE(pipes.haveEnded());
  EXPECT_TRUE(pipes.wereKeysLetGo());
  GuardedPipes ending;
  ending.send(GuardedPipes::Input::vanish);
  EXPECT_TRUE(ending.haveEnded());
  EXPECT_TRUE(ending.wereKeysLetGo());
}

TEST_F(GuardProcessTest, WithoutItsWatcherAGuardLetsEverythingGoOnAndEnds) {
  typeBehindADecision();
  ::kill(pipes.watcher(), SIGKILL);
  EXPECT_EQ(pipes.presses(), (Presses{KEY_SPACE, KEY_B}));
  EXPECT_TRUE(pipes.haveEnded());
}

TEST_F(GuardProcessTest, WithoutItsProgramAGuardLetsEverythingGoOnAndEnds) {
  typeBehindADecision();
  pipes.hangUp();
  EXPECT_EQ(pipes.presses(), (Presses{KEY_SPACE, KEY_B}));
  EXPECT_TRUE(pipes.haveEnded());
  EXPECT_TRUE(pipes.wereKeysLetGo());
}

TEST_F(GuardProcessTest, AProgramThatDoesNotAnswerKeepsAKeyOnlyOnce) {
  typeBehindADecision();
  EXPECT_EQ(pipes.presses(2), (Presses{KEY_SPACE, KEY_B}));
  EXPECT_TRUE(pipes.await(ReportKind::timedOut));
}

TEST(GuardProcess, SaysWhenTheDisplayLacksSomething) {
  GuardedPipes pipes(GuardedPipes::Fault::noSeat);
  EXPECT_TRUE(pipes.await(ReportKind::unavailable));
  EXPECT_TRUE(pipes.haveEnded());
}

TEST(GuardProcess, LeavesAProgramOfAnotherBuild) {
  GuardedPipes pipes;
  sendRecord(pipes.program(), FrameKind::hello, Hello{protocolVersion + 1});
  EXPECT_TRUE(pipes.haveEnded());
}

}  // namespace
}  // namespace kivra::guard
