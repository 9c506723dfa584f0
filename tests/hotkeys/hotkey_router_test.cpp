#include "hotkeys/hotkey_router.h"

#include <gtest/gtest.h>

#include "platform/embedded/embedded_defaults_database.h"

namespace kivra {
namespace {

using namespace std::chrono_literals;
using namespace event_flags;

constexpr std::uint16_t leftShift = key_codes::leftShift;
constexpr std::uint16_t rightShift = key_codes::rightShift;
constexpr std::uint16_t fnKey = 63;
constexpr std::uint16_t controlKey = 59;

struct SettableClock : Clock {
  std::chrono::microseconds now() override { return time; }
  void sleep(std::chrono::microseconds /*duration*/) override {}
  std::chrono::microseconds time{0};  // the first tap may come at the epoch
};

/// Writes down what it is asked, one word a request.
struct Recorder : HotkeyRouterDelegate {
  void routerDidRequestAction(const HotkeyAction& action) override {
    const auto* translation = std::get_if<HotkeyAction::TranslateTo>(&action.kind);
    log += translation != nullptr ? "translate:" + translation->language + " " : "correct ";
  }
  void routerDidRequestManualSwitch() override { log += "switch "; }
  void routerDidRequestUndo() override { log += "undo "; }
  bool routerDidTypeKey(std::uint16_t keyCode, std::uint64_t flags) override {
    log += "key:" + std::to_string(keyCode) + ":" + std::to_string(flags) + " ";
    return false;
  }
  bool routerDidReachWordBoundary(std::optional<std::uint16_t> keyCode) override {
    log += keyCode ? "end:" + std::to_string(*keyCode) + " " : "break ";
    return consumes;
  }

  std::string log;
  bool consumes = false;
};

class HotkeyRouterTest : public testing::Test {
 protected:
  HotkeyRouterTest() { router_.setDelegate(recorder_); }

  bool key(std::uint16_t code, std::uint64_t flags = 0) {
    return send({.type = EventType::keyDown, .keyCode = code, .flags = flags});
  }
  void modifiers(std::uint16_t code, std::uint64_t flags) {
    EXPECT_FALSE(send({.type = EventType::flagsChanged, .keyCode = code, .flags = flags}));
  }
  void click(EventType button = EventType::leftMouseDown) { EXPECT_FALSE(send({.type = button})); }
  void tap(std::uint16_t code = leftShift, std::chrono::microseconds held = 10ms) {
    modifiers(code, shift);
    clock_.time += held;
    modifiers(code, 0);
  }
  std::string taken() { return std::exchange(recorder_->log, {}); }

  embedded::EmbeddedDefaultsDatabase database_;
  UserDefaults defaults_{database_};
  SettingsStore settings_{defaults_};
  SettableClock clock_;
  HotkeyRouter router_{settings_, clock_};
  std::shared_ptr<Recorder> recorder_ = std::make_shared<Recorder>();

 private:
  bool send(const Event& event) { return router_.handle(event, event.type); }
};

TEST_F(HotkeyRouterTest, UndoesOnTheReleaseOfTheSecondTapOnly) {
  tap();
  EXPECT_EQ(taken(), "");
  modifiers(rightShift, shift);
  EXPECT_EQ(taken(), "");
  modifiers(rightShift, 0);
  EXPECT_EQ(taken(), "undo ");
  tap();
  EXPECT_EQ(taken(), "") << "the third tap starts a pair of its own";
  tap(rightShift);
  EXPECT_EQ(taken(), "undo ");
}

TEST_F(HotkeyRouterTest, MeasuresTheGapFromReleaseToReleaseExclusively) {
  tap();
  clock_.time += 400ms - 10ms;
  tap();
  EXPECT_EQ(taken(), "") << "a gap of the whole window is too long";
  clock_.time += 400ms - 10ms - 1us;
  tap();
  EXPECT_EQ(taken(), "undo ") << "the late tap began the next pair";
}

TEST_F(HotkeyRouterTest, CountsOnlyPressesUnderHalfASecond) {
  tap(leftShift, 500ms);
  tap();
  EXPECT_EQ(taken(), "") << "a hold is not the first tap";
  tap(leftShift, 500ms);
  clock_.time -= 490ms;  // leaves nothing but the hold itself to end the pair
  tap();
  EXPECT_EQ(taken(), "") << "a hold forgets the tap before it";
  clock_.time += 1s;
  tap(leftShift, 500ms - 1us);
  tap();
  EXPECT_EQ(taken(), "undo ");
}

TEST_F(HotkeyRouterTest, AKeyWithShiftSpoilsTheTapItFallsInto) {
  tap();
  modifiers(leftShift, shift);
  key(0, shift);
  modifiers(leftShift, 0);
  tap();
  EXPECT_EQ(taken(), "key:0:131072 ");
  key(0);
  tap();
  EXPECT_EQ(taken(), "key:0:0 undo ") << "a key between the taps does not matter";
}

TEST_F(HotkeyRouterTest, AReleaseWithoutItsPressForgetsTheTap) {
  tap();
  modifiers(leftShift, 0);
  tap();
  EXPECT_EQ(taken(), "");
  modifiers(controlKey, control);
  modifiers(controlKey, 0);
  tap();
  EXPECT_EQ(taken(), "undo ") << "other modifiers do not matter";
}

TEST_F(HotkeyRouterTest, FnForgetsTheTap) {
  settings_.correctCombo.set(ModifierCombo::off());
  tap();
  modifiers(fnKey, fn);
  modifiers(fnKey, 0);
  tap();
  EXPECT_EQ(taken(), "") << "Fn between the taps";
  modifiers(leftShift, shift);
  modifiers(fnKey, shift | fn);
  modifiers(fnKey, shift);
  modifiers(leftShift, 0);
  tap();
  EXPECT_EQ(taken(), "") << "Fn within a tap";
  tap();
  EXPECT_EQ(taken(), "undo ");
}

TEST_F(HotkeyRouterTest, ACombinationWithShiftForgetsTheTap) {
  settings_.translateCombo.set({ComboModifier::control, ComboModifier::shift});
  tap();
  modifiers(controlKey, control);
  modifiers(leftShift, control | shift);
  modifiers(controlKey, shift);
  modifiers(leftShift, 0);
  EXPECT_EQ(taken(), "translate:EN-US ") << "the tap before the combination is forgotten";
  clock_.time += 1s;
  modifiers(leftShift, shift);
  modifiers(controlKey, control | shift);
  modifiers(controlKey, shift);
  modifiers(leftShift, 0);
  tap();
  EXPECT_EQ(taken(), "translate:EN-US ") << "a press that was part of a combination is no tap";
}

TEST_F(HotkeyRouterTest, FiresACombinationOnceWhenItIsLetGoOf) {
  modifiers(controlKey, control);
  modifiers(fnKey, control | fn);
  settings_.ctrlFnTargetLang.set("FR");
  modifiers(58, control | fn | option);
  EXPECT_EQ(taken(), "") << "held with a further key it is still held";
  modifiers(58, control | fn);
  settings_.ctrlFnTargetLang.set("IT");
  modifiers(fnKey, control);
  EXPECT_EQ(taken(), "translate:FR ") << "the language of the last moment it was held";
  modifiers(controlKey, 0);
  EXPECT_EQ(taken(), "");
}

TEST_F(HotkeyRouterTest, FiresTheOtherCombinationAndLetsTranslationWin) {
  modifiers(fnKey, fn);
  modifiers(leftShift, fn | shift);
  modifiers(fnKey, shift);
  EXPECT_EQ(taken(), "correct ");
  modifiers(leftShift, 0);
  modifiers(fnKey, control | fn | shift);
  modifiers(fnKey, 0);
  EXPECT_EQ(taken(), "translate:EN-US ");
  modifiers(leftShift, fn | shift);
  modifiers(controlKey, control | fn);
  modifiers(controlKey, 0);
  EXPECT_EQ(taken(), "translate:EN-US ") << "what is held last replaces what was pending";
}

TEST_F(HotkeyRouterTest, AKeyOrAClickCancelsAHeldCombination) {
  const auto hold = [&] { modifiers(fnKey, control | fn); };
  const auto letGo = [&] { modifiers(fnKey, 0); };
  hold();
  EXPECT_FALSE(key(8, control | fn));
  letGo();
  EXPECT_EQ(taken(), "break ");
  for (const auto button : {EventType::leftMouseDown, EventType::rightMouseDown}) {
    hold();
    click(button);
    letGo();
    EXPECT_EQ(taken(), "break ");
  }
  hold();
  EXPECT_TRUE(key(8, control | option | fn)) << "a hotkey cancels it too";
  letGo();
  EXPECT_EQ(taken(), "correct ");
  hold();
  letGo();
  EXPECT_EQ(taken(), "translate:EN-US ");
}

TEST_F(HotkeyRouterTest, ACombinationOfOneModifierIsSwitchedOff) {
  settings_.translateCombo.set({ComboModifier::control});
  settings_.correctCombo.set(ModifierCombo::off());
  modifiers(controlKey, control | fn | shift);
  modifiers(controlKey, 0);
  EXPECT_EQ(taken(), "");
}

TEST_F(HotkeyRouterTest, FiresTheFirstOfEqualHotkeys) {
  const Hotkey same{40, command};
  const auto wanted = {"switch ", "translate:EN-US ", "translate:DE ", "correct "};
  const auto settings = {&settings_.manualSwitchHotkey, &settings_.translateHotkey1,
                         &settings_.translateHotkey2, &settings_.correctHotkey};
  EXPECT_FALSE(key(40, command));
  EXPECT_EQ(taken(), "break ") << "unbound";
  for (auto* setting : settings) setting->set(same);
  for (std::size_t first = 0; first < settings.size(); ++first) {
    EXPECT_TRUE(key(40, command | fn));
    EXPECT_EQ(taken(), wanted.begin()[first]);
    settings.begin()[first]->set({41, command});
  }
  settings_.translateHotkey1.set({key_codes::pause, 0});
  EXPECT_TRUE(key(key_codes::pause));
  EXPECT_EQ(taken(), "switch ") << "Pause goes before the translate hotkeys";
}

TEST_F(HotkeyRouterTest, ReadsTheSettingsAtEachEvent) {
  constexpr auto chord = control | option;
  EXPECT_TRUE(key(35, chord));
  EXPECT_FALSE(key(35, chord | shift));
  settings_.manualSwitchHotkey.set({34, chord});
  EXPECT_FALSE(key(35, chord));
  EXPECT_TRUE(key(34, chord));
  EXPECT_EQ(taken(), "switch break break switch ");
  settings_.translateHotkey2Lang.set("PL");
  EXPECT_TRUE(key(2, chord));
  EXPECT_EQ(taken(), "translate:PL ");
  EXPECT_TRUE(key(key_codes::pause, command));
  settings_.pauseAsManualSwitch.set(false);
  EXPECT_FALSE(key(key_codes::pause, command));
  EXPECT_FALSE(key(key_codes::pause));
  EXPECT_EQ(taken(), "switch break key:113:0 ");
}

TEST_F(HotkeyRouterTest, ForwardsKeysAndBoundaries) {
  for (const bool consumes : {false, true}) {
    recorder_->consumes = consumes;
    for (const auto code : std::initializer_list<std::uint16_t>{36, 48, 49, 76}) {
      EXPECT_EQ(key(code, shift | fn), consumes);
      EXPECT_EQ(taken(), "end:" + std::to_string(code) + " ");
      for (const auto modifier : {control, option, command}) {
        EXPECT_FALSE(key(code, modifier));
        EXPECT_EQ(taken(), "break ") << code;
      }
    }
    for (const auto code : std::initializer_list<std::uint16_t>{53, 123, 124, 125, 126}) {
      EXPECT_FALSE(key(code, shift));
      EXPECT_EQ(taken(), "break ") << code;
    }
    click(EventType::rightMouseDown);
    EXPECT_EQ(taken(), "break ");
  }
  EXPECT_FALSE(key(51, shift));
  EXPECT_FALSE(key(65535, fn));
  EXPECT_FALSE(key(122));
  EXPECT_EQ(taken(), "key:51:131072 key:65535:8388608 key:122:0 ");
}

TEST_F(HotkeyRouterTest, ConsumesHotkeysForADelegateThatIsGone) {
  recorder_->consumes = true;
  ASSERT_TRUE(key(key_codes::space));
  recorder_.reset();
  EXPECT_TRUE(key(35, control | option));
  EXPECT_TRUE(key(8, control | option));
  EXPECT_FALSE(key(key_codes::space)) << "boundaries pass";
  EXPECT_FALSE(key(0));
  tap();
  tap();
  modifiers(fnKey, control | fn);
  modifiers(fnKey, 0);
  click();
}

}  // namespace
}  // namespace kivra
