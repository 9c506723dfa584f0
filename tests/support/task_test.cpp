#include "support/task.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "platform/embedded/effects.h"
#include "platform/embedded/virtual_time.h"

namespace kivra {
namespace {

using namespace std::chrono_literals;

/// Says when it is destroyed.
class Witness {
 public:
  explicit Witness(bool& destroyed) : destroyed_(destroyed) {}
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;
  ~Witness() { destroyed_ = true; }

 private:
  bool& destroyed_;
};

class TaskTest : public testing::Test {
 protected:
  Task<int> answer() {
    auto ask = [this](Completion<int> completion) { completion_ = std::move(completion); };
    co_return co_await completionOf<int>(std::move(ask)) + 1;
  }

  Task<void> run() {
    const Witness witness(ended_);
    steps_.emplace_back("begun");
    try {
      steps_.push_back(std::to_string(co_await answer()));
    } catch (const PlatformError& error) {
      steps_.emplace_back(error.what());
    }
  }

  Task<void> fail() {
    steps_.emplace_back("failing");
    throw std::runtime_error("nobody sees this");
    co_return;
  }

  void start(Task<void> task) { startTask(time_, owner_, std::move(task)); }

  embedded::Effects effects_{nullptr};
  std::shared_ptr<int> owner_ = std::make_shared<int>(0);
  std::vector<std::string> steps_;
  bool ended_ = false;
  Completion<int> completion_;
  embedded::VirtualTime time_{effects_};
};

using Steps = std::vector<std::string>;

TEST_F(TaskTest, BeginsAndGoesOnFromTheRunLoopOnly) {
  start(run());
  EXPECT_EQ(steps_, Steps{});
  time_.serve();
  EXPECT_EQ(steps_, Steps{"begun"});
  completion_(41);
  EXPECT_EQ(steps_, Steps{"begun"});
  time_.serve();
  EXPECT_EQ(steps_, (Steps{"begun", "42"}));
  EXPECT_TRUE(ended_);
}

TEST_F(TaskTest, ThrowsThePlatformsError) {
  start(run());
  time_.serve();
  completion_(PlatformError("no network"));
  time_.serve();
  EXPECT_EQ(steps_, (Steps{"begun", "no network"}));
}

TEST_F(TaskTest, ASecondAnswerIsIgnored) {
  start(run());
  time_.serve();
  const auto twice = completion_;
  completion_(1);
  twice(2);
  time_.serve();
  twice(3);
  time_.serve();
  EXPECT_EQ(steps_, (Steps{"begun", "2"}));
}

TEST_F(TaskTest, AnAnswerThatNeverComesEndsTheTask) {
  start(run());
  time_.serve();
  EXPECT_FALSE(ended_);
  completion_ = nullptr;
  EXPECT_TRUE(ended_);
  EXPECT_EQ(steps_, Steps{"begun"});
}

TEST_F(TaskTest, NothingHappensOnceTheOwnerIsGone) {
  start(run());
  time_.serve();
  owner_.reset();
  completion_(1);
  time_.serve();
  EXPECT_EQ(steps_, Steps{"begun"});
  completion_ = nullptr;
  EXPECT_TRUE(ended_);
  start(run());
  time_.serve();
  EXPECT_EQ(steps_, Steps{"begun"}) << "a task of a dead owner does not even begin";
}

TEST_F(TaskTest, AFailureThatNobodyHandlesGoesNoFurther) {
  start(fail());
  time_.serve();
  EXPECT_EQ(steps_, Steps{"failing"});
}

}  // namespace
}  // namespace kivra
