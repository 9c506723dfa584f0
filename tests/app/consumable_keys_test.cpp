#include <gtest/gtest.h>

#include <algorithm>

#include "app/kivra_app.h"
#include "platform/embedded/embedded_desktop.h"
#include "platform/replaced_events.h"

namespace kivra {
namespace {

/// Notes what the core announces.
class NotedTaps : public embedded::EmbeddedEventStream {
 public:
  using EmbeddedEventStream::EmbeddedEventStream;

  void setConsumableKeys(const std::vector<KeyChord>& keys) override { announced = keys; }

  bool has(std::uint16_t keyCode, std::uint64_t flags) const {
    return std::ranges::find(announced, KeyChord{keyCode, flags}) != announced.end();
  }

  std::vector<KeyChord> announced;
};

class ConsumableKeys : public testing::Test {
 protected:
  static constexpr std::uint64_t controlOption = event_flags::control | event_flags::option;

  embedded::EmbeddedDesktop desktop_{nullptr, nullptr};
  NotedTaps taps_{desktop_.effects, desktop_.application, desktop_.session,
                  desktop_.localKeyMonitors};
  KivraApp app_{withEvents(desktop_.platform(), taps_, desktop_.platform().eventPosting)};
};

TEST_F(ConsumableKeys, AreTheBoundariesTheHotkeysAndPause) {
  app_.delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(taps_.has(key_codes::space, 0));
  EXPECT_TRUE(taps_.has(key_codes::returnKey, event_flags::shift));
  EXPECT_TRUE(taps_.has(35, controlOption));
  EXPECT_TRUE(taps_.has(key_codes::pause, 0));
  EXPECT_TRUE(taps_.has(key_codes::pause, event_flags::command));
  EXPECT_FALSE(taps_.has(key_codes::space, event_flags::control));
  EXPECT_FALSE(taps_.has(35, 0));
}

TEST_F(ConsumableKeys, FollowTheSettings) {
  app_.delegate->applicationDidFinishLaunching();
  auto& settings = app_.services.settings();
  settings.manualSwitchHotkey.set({40, event_flags::command});
  settings.pauseAsManualSwitch.set(false);
  desktop_.time.runFor(std::chrono::milliseconds(1));
  EXPECT_TRUE(taps_.has(40, event_flags::command));
  EXPECT_FALSE(taps_.has(35, controlOption));
  EXPECT_FALSE(taps_.has(key_codes::pause, 0));
  EXPECT_FALSE(taps_.has(44, event_flags::shift));
  settings.extendedRules.set(true);
  desktop_.time.runFor(std::chrono::milliseconds(1));
  EXPECT_TRUE(taps_.has(44, event_flags::shift) && taps_.has(44, 0)) << "a mark in both layouts";
  EXPECT_TRUE(taps_.has(18, event_flags::shift));
  EXPECT_FALSE(taps_.has(18, 0)) << "a digit";
  EXPECT_FALSE(taps_.has(43, 0)) << "a letter in Russian";
  settings.isEnabled.set(false);
  desktop_.time.runFor(std::chrono::milliseconds(1));
  EXPECT_TRUE(taps_.announced.empty());
}

}  // namespace
}  // namespace kivra
