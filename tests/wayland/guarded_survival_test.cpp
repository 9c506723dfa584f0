// Hands type on while guard and program are stopped and killed.

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <functional>
#include <thread>

#include "guarded_session.h"
#include "wrong_words.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

class Survival : public testing::Test {
 protected:
  /// Types words in a thread of its own while something happens to guard and program; counts what
  /// has come of them.
  WordCount typeDuring(int wordCount, const std::function<void()>& happening) {
    const auto text = misplacedWords(wordCount);
    const auto expected = typedIn(1, text);
    session.window.clear();
    std::jthread hands([&] { session.hand.type(text, {.key = 10ms, .hold = 15ms}); });
    happening();
    hands.join();
    const auto isComplete = [&] {
      const auto now = session.window.text();
      return std::ranges::count(now, ' ') == std::ranges::count(expected, ' ');
    };
    waitFor(isComplete);
    return compareWords(session.window.text(), expected);
  }

  GuardedSession session;
};

TEST_F(Survival, AStoppedGuardLosesNothing) {
  session.start();
  const auto count = typeDuring(20, [&] {
    std::this_thread::sleep_for(300ms);
    ::kill(session.program->guardPid(), SIGSTOP);
  });
  EXPECT_EQ(count.right, 20) << count.firstDifference;
}

TEST_F(Survival, AfterAKilledGuardAndWhileTheNextOneStartsNothingIsLost) {
  constexpr int kills = 10;
  session.start();
  for (int i = 0; i < kills; ++i) {
    ::kill(session.program->guardPid(), SIGKILL);
    ASSERT_TRUE(session.program->watcher().wait(5s));
    // So that the compositor has noticed.
    session.hand.settle();
    const auto count = typeDuring(5, [&] { session.startUnheard(); });
    EXPECT_EQ(count.wrong, 0) << count.firstDifference;
    EXPECT_GT(count.right, 0);
  }
}

TEST_F(Survival, AKilledProgramLosesNothingAndNeitherDoesTheNextOne) {
  constexpr int kills = 5;
  session.start();
  const auto count = typeDuring(60, [&] {
    for (int i = 0; i < kills; ++i) {
      std::this_thread::sleep_for(600ms);
      session.program->hangUp();
      ASSERT_TRUE(session.program->watcher().wait(5s));
      session.startUnheard();
    }
  });
  EXPECT_EQ(count.wrong, 0) << count.firstDifference;
  EXPECT_GT(count.right, 0);
}

}  // namespace
}  // namespace kivra::e2e
