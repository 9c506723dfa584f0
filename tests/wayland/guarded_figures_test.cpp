// What the guard adds to a key, printed, against generous bounds.

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <algorithm>
#include <iostream>

#include "guarded_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::microseconds;

/// Times from the press of a key to the arrival of the last key that comes of it, sorted.
class Latencies {
 public:
  void measure(GuardedSession& session, std::uint16_t key, const std::string& textAfterwards) {
    const auto begin = Clock::now();
    session.hand.press(key);
    ASSERT_EQ(session.window.textAfter(textAfterwards), textAfterwards);
    const auto keys = session.window.keys();
    const auto last = std::ranges::find_if(keys.rbegin(), keys.rend(), &TextWindow::Key::isDown);
    times_.push_back(std::chrono::duration_cast<Microseconds>(last->arrival - begin));
    session.hand.release(key);
    std::ranges::sort(times_);
  }

  Microseconds median() const { return times_.at(times_.size() / 2); }
  Microseconds percentile99() const { return times_.at(times_.size() * 99 / 100); }

 private:
  std::vector<Microseconds> times_;
};

std::ostream& operator<<(std::ostream& out, const Latencies& latencies) {
  return out << "median " << latencies.median().count() << " us, 99 % "
             << latencies.percentile99().count() << " us\n";
}

TEST(GuardedFigures, Latency) {
  constexpr int count = 100;
  GuardedSession session;
  Latencies bare;
  Latencies letter;
  Latencies passed;
  Latencies corrected;
  for (int i = 0; i < count; ++i) {
    session.window.clear();
    bare.measure(session, KEY_A, "a");
  }
  session.start();
  for (int i = 0; i < count; ++i) {
    session.window.clear();
    letter.measure(session, KEY_G, "g");
    session.hand.type("hbdtn");
    ASSERT_EQ(session.window.textAfter("ghbdtn"), "ghbdtn");
    corrected.measure(session, KEY_SPACE, "привет ");
    passed.measure(session, KEY_SPACE, "привет  ");
  }
  std::cout << "[ FIGURES  ] a key without the guard: " << bare
            << "[ FIGURES  ] a letter with it: " << letter
            << "[ FIGURES  ] a Space that passes: " << passed
            << "[ FIGURES  ] a correction of six letters: " << corrected;
  // No user sees ten milliseconds; a machine under load may take some of them.
  EXPECT_LT(letter.median() - bare.median(), 10ms);
  EXPECT_LT(corrected.median(), 15ms);
}

}  // namespace
}  // namespace kivra::e2e
