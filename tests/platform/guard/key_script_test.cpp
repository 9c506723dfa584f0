// What posted keys and chords come out as, whatever hands hold and whatever is locked.

#include <gtest/gtest.h>

#include "platform/events.h"
#include "platform/guard/guard_bench.h"

namespace kivra::guard {
namespace {

class KeyScriptTest : public testing::Test {
 protected:
  void SetUp() override { bench.enable({{key_codes::space, 0}, {12, event_flags::option}}); }

  void expectAllUp() {
    EXPECT_EQ(bench.screen.down().count(), 0U);
    EXPECT_EQ(bench.screen.faults(), 0);
    EXPECT_EQ(bench.screen.menus(), 0);
  }

  GuardBench bench;
};

TEST_F(KeyScriptTest, ACommandChordIsTheDesktopsOwnAndKnowsNoHeldModifier) {
  bench.press(KEY_LEFTSHIFT);
  bench.post(0, Posted().key(KEY_C, event_flags::command).key(KEY_V, event_flags::command));
  EXPECT_EQ(bench.screen.chords(), "C-110 C-47 ") << "Insert for C";
  bench.tap(KEY_A);
  EXPECT_EQ(bench.screen.text(), "A") << "Shift is still held";
  bench.release(KEY_LEFTSHIFT);
  expectAllUp();
}

TEST_F(KeyScriptTest, AltAndSuperOpenNoMenuAndWorkOnWithTheNextKey) {
  for (const auto modifier : {KEY_LEFTALT, KEY_LEFTMETA}) {
    const auto key = static_cast<std::uint16_t>(modifier);
    bench.press(key);
    bench.post(0, Posted().letters("a"));
    EXPECT_FALSE(bench.screen.down().test(key));
    bench.tap(KEY_X);
    bench.release(key);
    bench.press(key);
    bench.post(0, Posted().letters("b"));
    bench.release(key);
    bench.verdict(bench.reports().back().number, false);
  }
  EXPECT_EQ(bench.screen.text(), "abab");
  EXPECT_EQ(bench.screen.chords(), "A-45 S-45 ");
  expectAllUp();
}

TEST_F(KeyScriptTest, AnOwedAltIsThereForTheNextModifierToo) {
  bench.press(KEY_LEFTALT);
  bench.post(0, Posted().letters("a"));
  bench.press(KEY_LEFTSHIFT);
  EXPECT_TRUE(bench.screen.down().test(KEY_LEFTALT)) << "together they may choose a layout";
}

// Alt+Q is consumed: Alt, let go of with no other key in between, would open a menu.
TEST_F(KeyScriptTest, AConsumedChordLeavesNoTraceInWhateverOrderItIsLetGoOf) {
  for (const auto isAltFirst : {true, false}) {
    bench.press(KEY_LEFTALT);
    bench.press(KEY_Q);
    const auto reports = bench.reports();
    ASSERT_NE(reports.back().awaitsVerdict, 0);
    bench.verdict(reports.back().number, true);
    bench.repeat(KEY_Q);
    bench.release(isAltFirst ? KEY_LEFTALT : KEY_Q);
    bench.release(isAltFirst ? KEY_Q : KEY_LEFTALT);
    EXPECT_EQ(bench.seat.dropped.back().evdev, KEY_Q);
    expectAllUp();
  }
  EXPECT_EQ(bench.screen.chords(), "");
  EXPECT_EQ(bench.screen.text(), "");
}

TEST_F(KeyScriptTest, LocksAndTheirKeysAreLeftAsTheyAre) {
  bench.tap(KEY_CAPSLOCK);
  bench.type("ab");
  bench.press(KEY_CAPSLOCK);
  bench.press(KEY_SPACE);
  const auto number = bench.reports().back().number;
  bench.verdict(number, true, Posted().erase(2).letters("ab").key(KEY_SPACE));
  EXPECT_EQ(bench.screen.text(), "AB ") << "the lock ends only when its key is let go of";
  bench.release(KEY_CAPSLOCK);
  bench.release(KEY_SPACE);
  bench.type("c");
  EXPECT_EQ(bench.screen.text(), "AB c");
  expectAllUp();
}

TEST_F(KeyScriptTest, CharactersKeepTheirCaseUnderCapsLock) {
  bench.tap(KEY_CAPSLOCK);
  bench.post(0, Posted().character(U'i').character(U'O').character(U'1').letters("a"));
  EXPECT_EQ(bench.screen.text(), "iO1A") << "a key comes out as hands would type it";
}

TEST_F(KeyScriptTest, CharactersAreTypedByTheirKeyOrElseAsThemselves) {
  bench.post(0, Posted().group(1).character(U'Ж').character(U'ё').character(U'é'));
  EXPECT_EQ(bench.screen.text(), "Жёé");
  expectAllUp();
}

TEST_F(KeyScriptTest, NothingStaysDownThatIsPostedWithoutItsRelease) {
  const std::vector<PostedKey> presses{{.keyCode = 0}, {.keyCode = 1}};
  bench.post(0, presses);
  EXPECT_EQ(bench.screen.text(), "as");
  expectAllUp();
}

TEST_F(KeyScriptTest, KeysThatNoKeyboardHasAreLeftOut) {
  const std::vector<PostedKey> keys{{.keyCode = 0x7FFF}, {.kind = PostedKey::Kind{77}}};
  bench.post(0, keys);
  EXPECT_EQ(bench.screen.text(), "");
  expectAllUp();
}

TEST_F(KeyScriptTest, AltGrIsLiftedForAScript) {
  const Layouts layouts("lv3:ralt_switch");
  GuardBench withAltGr(layouts);
  withAltGr.enable(spaces());
  withAltGr.press(KEY_RIGHTALT);
  withAltGr.post(0, Posted().letters("a"));
  EXPECT_EQ(withAltGr.screen.text(), "a");
  withAltGr.release(KEY_RIGHTALT);
  EXPECT_EQ(withAltGr.screen.menus(), 0);
  EXPECT_EQ(withAltGr.screen.down().count(), 0U);
}

// Pressed between the word and the verdict, it waits for its turn.
TEST_F(KeyScriptTest, LayoutKeysAreModifiersChangesWithTheirPlaceInTheOrder) {
  const Layouts layouts("grp:caps_toggle");
  GuardBench toggled(layouts);
  toggled.enable(spaces());
  toggled.type("ab");
  toggled.press(KEY_SPACE);
  const auto number = toggled.reports().back().number;
  toggled.tap(KEY_CAPSLOCK);
  EXPECT_FALSE(toggled.screen.down().test(KEY_CAPSLOCK));
  toggled.verdict(number, true, Posted().erase(2).letters("cd"));
  toggled.tap(KEY_CAPSLOCK);
  const auto reports = toggled.reports();
  ASSERT_EQ(reports.size(), 2U);
  EXPECT_EQ(reports[0].kind, ReportKind::flagsChanged);
  EXPECT_EQ(reports[1].kind, ReportKind::flagsChanged);
  EXPECT_EQ(toggled.screen.text(), "cd");
}

}  // namespace
}  // namespace kivra::guard
