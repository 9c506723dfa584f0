#include "platform/x11/guard_watchdog.h"

#include <gtest/gtest.h>

#include <utility>

#include "platform/embedded/virtual_time.h"

namespace kivra::x11 {
namespace {

using namespace std::chrono_literals;

class GuardWatchdogTest : public testing::Test {
 protected:
  void SetUp() override { watchdog_.start(); }

  void pressKey() {
    if (const auto called = std::exchange(atNextKey_, nullptr)) called();
  }

  bool isAsleep() const { return atNextKey_ != nullptr; }

  embedded::Effects effects_{nullptr};
  embedded::VirtualTime time_{effects_};
  bool answers_ = true;
  bool reports_ = true;
  bool isStopped_ = false;
  int bites_ = 0;
  std::function<void()> atNextKey_;
  GuardWatchdog watchdog_{{.runLoop = time_,
                           .readReports =
                               [this] {
                                 if (reports_) watchdog_.heard(false);
                               },
                           .ping =
                               [this] {
                                 if (answers_) watchdog_.heard(true);
                               },
                           .isStopped = [this] { return isStopped_; },
                           .bite = [this] { ++bites_; },
                           .atNextKey = [this](auto called) { atNextKey_ = std::move(called); }}};
};

TEST_F(GuardWatchdogTest, StoppedGuardIsBittenAtOnceAndABusyOneIsGivenTime) {
  answers_ = reports_ = false;
  time_.runFor(2s);
  EXPECT_EQ(bites_, 0);
  isStopped_ = true;
  time_.runFor(300ms);
  EXPECT_EQ(bites_, 1);
  isStopped_ = false;
  watchdog_.start();
  time_.runFor(3500ms);
  EXPECT_GT(bites_, 1) << "it hangs";
}

TEST_F(GuardWatchdogTest, SleepsWhileNobodyTypes) {
  time_.runFor(60s);
  EXPECT_FALSE(isAsleep()) << "keys are typed";
  reports_ = false;
  time_.runFor(10s);
  ASSERT_TRUE(isAsleep());
  answers_ = false;
  time_.runFor(60s);
  EXPECT_EQ(bites_, 0);
  pressKey();
  isStopped_ = true;
  time_.runFor(300ms);
  EXPECT_EQ(bites_, 1);
}

TEST_F(GuardWatchdogTest, StoppedInItsSleepItDoesNotWake) {
  reports_ = false;
  time_.runFor(10s);
  ASSERT_TRUE(isAsleep());
  watchdog_.stop();
  answers_ = false;
  pressKey();
  time_.runFor(10s);
  EXPECT_EQ(bites_, 0);
}

}  // namespace
}  // namespace kivra::x11
