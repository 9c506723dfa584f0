// Slow keys, bounce keys and their kin.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "keyboard_desktop.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

constexpr std::uint8_t keypadRight = 85;

/// What helps hands, as `xkbset` sets it; before the program starts or while it runs.
class Aids : public testing::TestWithParam<bool> {
 protected:
  void set(std::vector<std::string> aid, std::chrono::milliseconds hold = 80ms,
           std::chrono::milliseconds gap = 40ms) {
    aid.insert(aid.begin(), "xkbset");
    if (GetParam()) desktop.session.stopKivra();
    desktop.typist.setPace(hold, gap);
    desktop.session.run(aid);
    if (GetParam()) desktop.startKivra();
    desktop.window.textWhenQuiet(200ms);
  }

  KeyboardDesktop desktop{keyboards(1)};
};

INSTANTIATE_TEST_SUITE_P(BeforeTheStart, Aids, testing::Values(false, true));

// A server that stands still for a moment takes what comes meanwhile for quicker hands.
constexpr auto filter = "200";  // ms
constexpr auto longEnough = 400ms;

TEST_P(Aids, BounceKeysFilterHandsAndNoCorrection) {
  set({"bo", filter}, 50ms, longEnough);
  EXPECT_EQ(desktop.typed("ghbdtn hello "), "привет hello ");
  const auto bounce = [&] {
    desktop.typist.setPace(5ms, 5ms);
    desktop.typist.tap(keys::a);
    desktop.typist.tap(keys::a);
  };
  EXPECT_EQ(desktop.typed(bounce), "a");
}

TEST_P(Aids, SlowKeysFilterHandsAndNoCorrection) {
  set({"sl", filter}, longEnough, 50ms);
  EXPECT_EQ(desktop.typed("ghbdtn hello "), "привет hello ");
  const auto touch = [&] {
    desktop.typist.setPace(2ms, 2ms);
    desktop.typist.tap(keys::a);
  };
  EXPECT_EQ(desktop.typed(touch), "");
}

TEST_P(Aids, StickyKeysGiveACapital) {
  set({"sticky", "-twokey", "-latchlock"});
  const auto oneByOne = [&] {
    desktop.typist.tap(keys::shift);
    desktop.typist.type("aa");
  };
  EXPECT_EQ(desktop.typed(oneByOne), "Aa");
  EXPECT_EQ(desktop.typed("ghbdtn "), "привет ");
}

TEST_P(Aids, MouseKeysMoveThePointer) {
  set({"m"});
  const auto pointer = [&] { return desktop.session.run({"xdotool", "getmouselocation"}); };
  const auto before = pointer();
  desktop.typist.tap(keypadRight);
  EXPECT_TRUE(waitFor([&] { return pointer() != before; }, 2s));
  EXPECT_EQ(desktop.typed("ghbdtn "), "привет ");
}

}  // namespace
}  // namespace kivra::e2e
