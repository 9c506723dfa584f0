#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/run_loop.h"

namespace kivra {

/// What every run loop does. `Backend` is default-constructible and has `RunLoop& loop()`, the time
/// that it goes by, `now()`, and `pass(duration)`: time passes while nobody turns the loop.
template <class Backend>
class RunLoopContract : public ::testing::Test {
 protected:
  std::function<void()> note(char name) {
    return [this, name] { ran_ += name; };
  }
  void runUntilRan(std::size_t count) {
    backend_.loop().runUntil([&] { return ran_.size() >= count; });
  }

  Backend backend_;
  RunLoop& loop_ = backend_.loop();
  std::string ran_;
};
TYPED_TEST_SUITE_P(RunLoopContract);

TYPED_TEST_P(RunLoopContract, CallsEachBlockOnceWhenItsTimeHasCome) {
  using namespace std::chrono_literals;
  const auto start = this->backend_.now();
  this->loop_.asyncAfter(1s, this->note('c'));
  this->loop_.asyncAfter(0s, this->note('a'));
  this->loop_.asyncAfter(0s, this->note('b'));
  EXPECT_EQ(this->ran_, "") << "not before the caller has returned to the loop";
  this->runUntilRan(3);
  EXPECT_EQ(this->ran_, "abc");
  EXPECT_GE(this->backend_.now() - start, 1s);
  this->loop_.runFor(20ms);
  EXPECT_EQ(this->ran_, "abc");
}

TYPED_TEST_P(RunLoopContract, RepeatsATimerUntilItIsDropped) {
  using namespace std::chrono_literals;
  const auto start = this->backend_.now();
  auto timer = this->loop_.scheduleRepeatingTimer(10ms, this->note('t'));
  this->runUntilRan(3);
  EXPECT_GE(this->backend_.now() - start, 30ms);
  this->backend_.pass(20ms);
  timer.reset();
  const auto ran = this->ran_;
  this->loop_.runFor(30ms);
  EXPECT_EQ(this->ran_, ran) << "though it was due";
}

TYPED_TEST_P(RunLoopContract, ABlockMayDropItsOwnTimer) {
  using namespace std::chrono_literals;
  std::unique_ptr<Timer> timer;
  timer = this->loop_.scheduleRepeatingTimer(1ms, [&, held = std::string("still here")] {
    if (this->ran_.size() == 1) timer.reset();
    this->ran_ += held[0];
  });
  this->runUntilRan(2);
  this->loop_.runFor(30ms);
  EXPECT_EQ(this->ran_, "ss");
}

TYPED_TEST_P(RunLoopContract, ServesOthersWhileABlockTurnsTheLoop) {
  using namespace std::chrono_literals;
  const auto timer = this->loop_.scheduleRepeatingTimer(1ms, this->note('t'));
  this->loop_.asyncAfter(0s, [&] {
    this->ran_.clear();
    this->loop_.asyncAfter(5ms, this->note('x'));
    this->loop_.runUntil([&] { return this->ran_.find('x') != std::string::npos; });
    this->ran_ += '!';
  });
  this->loop_.runUntil([&] { return this->ran_.ends_with('!'); });
  EXPECT_EQ(this->ran_[0], 't');
  EXPECT_FALSE(this->loop_.isHeldUp());
}

TYPED_TEST_P(RunLoopContract, ServesWhatFellDueWhileNobodyTurnedIt) {
  using namespace std::chrono_literals;
  this->loop_.asyncAfter(1ms, this->note('a'));
  this->loop_.asyncAfter(2ms, this->note('b'));
  this->backend_.pass(30ms);
  EXPECT_EQ(this->ran_, "");
  this->runUntilRan(2);
  EXPECT_EQ(this->ran_, "ab");
}

REGISTER_TYPED_TEST_SUITE_P(RunLoopContract, CallsEachBlockOnceWhenItsTimeHasCome,
                            RepeatsATimerUntilItIsDropped, ABlockMayDropItsOwnTimer,
                            ServesOthersWhileABlockTurnsTheLoop,
                            ServesWhatFellDueWhileNobodyTurnedIt);

}  // namespace kivra
