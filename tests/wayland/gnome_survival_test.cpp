// Hands type on in GNOME Shell while guard and program are stopped and killed.

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <thread>

#include "guarded_gnome.h"
#include "guarded_session.h"
#include "wrong_words.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

class GnomeSurvival : public testing::Test {
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
    return compareWords(session.window.textAfter(expected), expected);
  }

  GuardedGnome session;
};

TEST_F(GnomeSurvival, AStoppedGuardLosesNothing) {
  session.start();
  const auto count = typeDuring(20, [&] {
    std::this_thread::sleep_for(300ms);
    ::kill(session.program->guardPid(), SIGSTOP);
  });
  EXPECT_EQ(count.right, 20) << count.firstDifference;
}

TEST_F(GnomeSurvival, AfterAKilledGuardTheShellHasItsOwnEngine) {
  session.start();
  ::kill(session.program->guardPid(), SIGKILL);
  ASSERT_TRUE(session.program->watcher().wait(5s));
  EXPECT_TRUE(waitFor([&] { return session.gnome.engine() == "xkb:us::eng"; }));
  session.hand.type("ghbdtn ");
  EXPECT_EQ(session.window.textAfter("ghbdtn "), "ghbdtn ");
}

TEST_F(GnomeSurvival, AKilledGuardLosesNothing) {
  session.start();
  const auto count = typeDuring(20, [&] {
    std::this_thread::sleep_for(300ms);
    ::kill(session.program->guardPid(), SIGKILL);
    ASSERT_TRUE(session.program->watcher().wait(5s));
    session.startUnheard();
  });
  EXPECT_EQ(count.wrong, 0) << count.firstDifference;
}

TEST_F(GnomeSurvival, AKilledProgramLosesNothingAndNeitherDoesTheNextOne) {
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
