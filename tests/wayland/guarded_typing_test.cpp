// Keys come out in their order at every pace, with a correction in each word.

#include <gtest/gtest.h>

#include <iostream>
#include <vector>

#include "guarded_session.h"
#include "wrong_words.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

constexpr int wordCount = 100;

class GuardedTyping : public testing::TestWithParam<std::chrono::milliseconds> {};

INSTANTIATE_TEST_SUITE_P(Hands, GuardedTyping, testing::Values(0ms, 2ms, 5ms, 10ms, 30ms),
                         [](const auto& pace) {
                           return "at_" + std::to_string(pace.param.count()) + "ms";
                         });

template <class Session>
void expectOrder(Session& session, std::chrono::milliseconds key) {
  const auto text = misplacedWords(wordCount);
  const auto expected = typedIn(1, text);
  // The slow hands roll as real ones do, now and then.
  const auto hands = key >= 30ms ? std::vector{false} : std::vector{false, true};
  for (const bool isRolling : hands) {
    session.window.clear();
    session.hand.type(text, paceOfHands(key, isRolling));
    const auto result = session.window.textAfter(expected);
    const auto count = compareWords(result, expected);
    EXPECT_EQ(count.wrong, 0) << "rolling: " << isRolling << ": " << count.firstDifference;
    // In a burst words may stay uncorrected, but none may lose, double or swap a letter.
    EXPECT_TRUE(key == 0ms || count.right == wordCount) << count.firstDifference;
    std::cout << "[ FIGURES  ] " << count.right << " of " << wordCount << " words corrected\n";
  }
}

TEST_P(GuardedTyping, KeepsTheOrderAndCorrectsEachWord) {
  GuardedSession session;
  session.start();
  expectOrder(session, GetParam());
}

class TypingInKwin : public GuardedTyping {};

// KWin ends clients that have not read some hundred keys: in a burst, the window or the guard.
INSTANTIATE_TEST_SUITE_P(Hands, TypingInKwin, testing::Values(2ms, 5ms, 10ms, 30ms),
                         [](const auto& pace) {
                           return "at_" + std::to_string(pace.param.count()) + "ms";
                         });

TEST_P(TypingInKwin, KeepsTheOrderAndCorrectsEachWord) {
  KwinSession session;
  expectOrder(session, GetParam());
}

}  // namespace
}  // namespace kivra::e2e
