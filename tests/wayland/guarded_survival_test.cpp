// Hands type on while guard and program are stopped and killed.

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <thread>

#include "guarded_session.h"
#include "wrong_words.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

constexpr int wordCount = 60;
constexpr int kills = 5;

class Survival : public testing::Test {
 protected:
  /// Types the words, and strikes meanwhile.
  WordCount typeUnder(const std::function<void()>& blow, int blows) {
    session.start();
    const auto text = misplacedWords(wordCount);
    std::thread hands([&] { session.hand.type(text, {.key = 10ms, .hold = 15ms}); });
    for (int i = 0; i < blows; ++i) {
      std::this_thread::sleep_for(600ms);
      blow();
    }
    hands.join();
    const auto expected = typedIn(1, text);
    return compareWords(session.window.textAfter(expected), expected);
  }

  GuardedSession session;
};

// One that is stopped again within three seconds is ended.
TEST_F(Survival, AStoppedGuardLosesNothing) {
  const auto count = typeUnder([&] { ::kill(session.program->guardPid(), SIGSTOP); }, 1);
  EXPECT_EQ(count.right, wordCount) << count.firstDifference;
}

TEST_F(Survival, AKilledGuardTakesAtMostTheKeyWithItThatItHad) {
  const auto count = typeUnder(
      [&] {
        ::kill(session.program->guardPid(), SIGKILL);
        ASSERT_TRUE(session.program->watcher().wait(5s));
        session.startUnheard();
      },
      kills);
  EXPECT_LE(count.wrong, kills) << count.firstDifference;
  EXPECT_GT(count.right, 0);
}

TEST_F(Survival, AKilledProgramLosesNothing) {
  const auto count = typeUnder(
      [&] {
        session.program->hangUp();
        ASSERT_TRUE(session.program->watcher().wait(5s));
        session.startUnheard();
      },
      kills);
  EXPECT_EQ(count.wrong, 0) << count.firstDifference;
  EXPECT_GT(count.right, 0);
}

}  // namespace
}  // namespace kivra::e2e
