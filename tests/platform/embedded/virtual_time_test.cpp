#include "platform/embedded/virtual_time.h"

#include <gtest/gtest.h>

namespace kivra::embedded {
namespace {

using namespace std::chrono_literals;

class VirtualTimeTest : public testing::Test {
 protected:
  std::function<void()> note(char name) {
    return [this, name] { ran_ += name; };
  }

  Effects effects_{nullptr};
  VirtualTime time_{effects_};
  std::string ran_;
};

TEST_F(VirtualTimeTest, ServesWhatFallsDueInOrderOfTimeThenOfQueueing) {
  time_.asyncAfter(2s, note('d'));
  time_.asyncAfter(1s, note('a'));
  const auto timer = time_.scheduleRepeatingTimer(1s, note('t'));
  time_.asyncAfter(1s, note('b'));
  time_.asyncAfter(0s, note('0'));
  EXPECT_EQ(ran_, "") << "nothing runs before the run loop does";
  time_.serve();
  EXPECT_EQ(ran_, "0");
  time_.runFor(1s);
  EXPECT_EQ(ran_, "0atb");
  time_.runFor(1s - 1us);
  EXPECT_EQ(ran_, "0atb");
  time_.runFor(1us);
  EXPECT_EQ(ran_, "0atbdt");
  EXPECT_EQ(time_.now(), 2s);
}

TEST_F(VirtualTimeTest, ServesABlockQueuedWhileServingAtItsTime) {
  time_.asyncAfter(1s, [&] {
    EXPECT_EQ(time_.now(), 1s);
    time_.asyncAfter(1s, note('x'));
    time_.runFor(500ms);
    ran_ += ran_.empty() ? '-' : '!';
  });
  time_.runFor(3s);
  EXPECT_EQ(ran_, "-x");
  EXPECT_EQ(time_.now(), 3s) << "what a block waits is part of the time";
}

TEST_F(VirtualTimeTest, SleepsWithoutServing) {
  const auto timer = time_.scheduleRepeatingTimer(1s, note('t'));
  time_.sleep(2500ms);
  EXPECT_EQ(ran_, "");
  EXPECT_EQ(time_.now(), 2500ms);
  time_.serve();
  EXPECT_EQ(ran_, "tt") << "what fell due meanwhile";
  time_.asyncAfter(1ms, [&] { time_.sleep(3s); });
  time_.asyncAfter(2s, note('x'));
  time_.runFor(1ms);
  EXPECT_EQ(ran_, "ttttxt") << "what fell due while a block slept, too";
  time_.dropAll();
  time_.runFor(5s);
  EXPECT_EQ(ran_, "ttttxt");
}

}  // namespace
}  // namespace kivra::embedded
