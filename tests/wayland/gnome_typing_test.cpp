// In GNOME Shell keys come out in their order, with a correction in each word, and with the
// modifiers that they were typed with.

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <vector>

#include "guarded_gnome.h"
#include "guarded_session.h"
#include "platform/events.h"
#include "wrong_words.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

constexpr int wordCount = 100;

class GnomeTyping : public testing::TestWithParam<Pace> {};

INSTANTIATE_TEST_SUITE_P(Hands, GnomeTyping,
                         testing::Values(Pace{.key = 10ms, .hold = 5ms},
                                         Pace{.key = 10ms, .hold = 15ms},
                                         Pace{.key = 30ms, .hold = 50ms, .spread = 80ms}),
                         [](const auto& pace) {
                           return "at_" + std::to_string(pace.param.key / 1ms) + "ms_holding_" +
                                  std::to_string(pace.param.hold / 1ms);
                         });

TEST_P(GnomeTyping, KeepsTheOrderAndCorrectsEachWord) {
  GuardedGnome session;
  session.start();
  const auto text = misplacedWords(wordCount);
  const auto expected = typedIn(1, text);
  session.hand.type(text, GetParam());
  const auto count = compareWords(session.window.textAfter(expected), expected);
  EXPECT_EQ(count.right, wordCount) << count.firstDifference;
}

std::vector<guard::PostedKey> capital(std::uint16_t evdev) {
  return postedTap(evdev, event_flags::shift);
}

TEST(GnomeModifiers, OfAScriptReachTheApplication) {
  GuardedGnome session;
  session.start();
  auto keys = capital(KEY_G);
  const auto small = postedTap(KEY_H);
  keys.insert(keys.end(), small.begin(), small.end());
  session.program->replaceWordsBy(keys);
  session.hand.type("ghb vbh ");
  EXPECT_EQ(session.window.textAfter("Gh Gh "), "Gh Gh ");
  // Nothing stays behind.
  session.hand.type("gh");
  EXPECT_EQ(session.window.textAfter("Gh Gh gh"), "Gh Gh gh");
}

TEST(GnomeModifiers, ThatHandsHoldDoNotChangeWhatIsTypedForTheProgram) {
  GuardedGnome session;
  auto& program = session.start();
  session.hand.press(KEY_LEFTSHIFT);
  ASSERT_TRUE(waitFor([&] { return program.count(guard::ReportKind::flagsChanged) > 0; }));
  program.post(postedTap(KEY_G));
  program.post(capital(KEY_H));
  session.hand.release(KEY_LEFTSHIFT);
  EXPECT_EQ(session.window.textAfter("gH"), "gH");
}

TEST(GnomeLayouts, OfTheShellAreWhatTheProgramHears) {
  GuardedGnome session;
  auto& program = session.start();
  const auto isHeard = [&](std::uint32_t group) {
    session.hand.tap(KEY_G);
    return waitFor(
        [&] {
          const auto reports = program.reports();
          return reports.back().kind == guard::ReportKind::keyDown && reports.back().group == group;
        },
        200ms);
  };
  for (const std::uint32_t group : {1U, 0U}) {
    session.hand.press(KEY_LEFTMETA);
    session.hand.tap(KEY_SPACE);
    session.hand.release(KEY_LEFTMETA);
    EXPECT_TRUE(waitFor([&] { return isHeard(group); })) << "group " << group;
  }
}

}  // namespace
}  // namespace kivra::e2e
