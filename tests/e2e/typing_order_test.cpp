// Keys come out in their order at every pace, on each server.

#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <tuple>

#include "kivra_session.h"
#include "wrong_words.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

constexpr int wordCount = 100;

using Server = XServer::Kind;
using Milliseconds = std::chrono::milliseconds;

class TypingOrder : public testing::TestWithParam<std::tuple<Server, Milliseconds>> {
 protected:
  /// Types the words in the layout that the first of them is wrong in, and counts what has come.
  WordCount typed(const std::string& text, const std::string& expected) {
    desktop.typist.selectGroup(0);
    desktop.window.textWhenQuiet(100ms);
    desktop.window.clear();
    desktop.typist.type(text);
    return compareWords(desktop.window.textAfter(expected), expected);
  }

  KivraSession desktop{{.server = {.kind = std::get<Server>(GetParam())}}};
};

std::string nameOf(const testing::TestParamInfo<std::tuple<Server, Milliseconds>>& parameters) {
  const auto& [server, pace] = parameters.param;
  const std::string name = server == Server::xorg ? "xorg" : "xvnc";
  return name + "_" + std::to_string(pace.count()) + "ms";
}

INSTANTIATE_TEST_SUITE_P(Hands, TypingOrder,
                         testing::Combine(testing::Values(Server::xorg, Server::xvnc),
                                          testing::Values(0ms, 2ms, 5ms, 10ms, 30ms)),
                         nameOf);

TEST_P(TypingOrder, IsThatOfTheEmbeddedDesktop) {
  const auto text = wrongWords(wordCount);
  const auto expected = embeddedResult(text);
  ASSERT_NE(expected, text);
  const auto pace = std::get<Milliseconds>(GetParam());
  for (const auto isRolling : {false, true}) {
    desktop.typist.setHand(pace, isRolling);
    const auto count = typed(text, expected);
    const auto reason = count.firstDifference + '\n' + desktop.session.kivraLog();
    EXPECT_EQ(count.wrong, 0) << "rolling: " << isRolling << ": " << reason;
    // In a burst words may stay uncorrected, but none may lose, double or swap a letter.
    EXPECT_TRUE(pace == 0ms || count.right == wordCount)
        << "rolling: " << isRolling << ": " << reason;
    std::cout << "[ FIGURES  ] " << count.right << " of " << wordCount << " words corrected\n";
  }
  EXPECT_TRUE(waitFor([&] { return !desktop.typist.isAnyKeyDown(); }, 1s));
  EXPECT_EQ(desktop.typist.locks(), 0U);
}

}  // namespace
}  // namespace kivra::e2e
