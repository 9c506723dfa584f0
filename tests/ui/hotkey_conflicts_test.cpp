#include "ui/hotkey_conflicts.h"

#include <gtest/gtest.h>

#include "app/services.h"
#include "platform/embedded/embedded_desktop.h"
#include "ui/hotkey_slots.h"

namespace kivra {
namespace {

/// A desktop on which another program waits for one combination.
class BusyWorkspace : public Workspace {
 public:
  std::optional<std::string> frontmostBundleIdentifier() override { return std::nullopt; }
  bool isSecureEventInputEnabled() override { return false; }
  void open(std::string_view /*url*/) override {}
  std::string shortcutOwner(const KeyChord& keys) override {
    return keys == KeyChord{17, event_flags::control} ? "терминал" : "";
  }
};

class HotkeyConflictsTest : public testing::Test {
 protected:
  /// What the user is told of a recorded hotkey, and what its row says of it afterwards.
  std::string told(const HotkeySlot& slot, const Hotkey& hotkey) {
    desktop_.notifications.last.reset();
    ((*settings_).*slot.property).set(hotkey);
    conflicts_.recorded(slot.title, hotkey);
    const auto& shown = desktop_.notifications.last;
    EXPECT_EQ(shown ? shown->text : "", conflicts_.hint(slot.title, hotkey));
    return shown ? shown->title + ": " + shown->text : "";
  }

  embedded::EmbeddedDesktop desktop_{[](const embedded::Json&) {}, nullptr};
  Services services_{desktop_.platform()};
  std::shared_ptr<SettingsStore> settings_ = services_.settings.pointer();
  BusyWorkspace workspace_;
  HotkeyConflicts conflicts_{settings_, [](std::uint16_t) { return "T"; }, workspace_,
                             desktop_.notifications, desktop_.terms};
};

TEST_F(HotkeyConflictsTest, AnotherHotkeyWithTheSameKeysIsNamed) {
  const auto taken = settings_->manualSwitchHotkey();
  EXPECT_EQ(told(hotkey_slots::translate1, taken),
            "⌃⌥T уже занято: То же сочетание у «Ручное переключение раскладки»: сработает только "
            "одно из двух.");
  EXPECT_NE(conflicts_.hint("Ручное переключение раскладки", taken), "");
  EXPECT_EQ(told(hotkey_slots::translate1, {17, event_flags::command}), "");
  EXPECT_EQ(conflicts_.hint("Ручное переключение раскладки", taken), "");
}

TEST_F(HotkeyConflictsTest, PauseSwitchesTheLayoutWhateverIsHeld) {
  const Hotkey pause{key_codes::pause, event_flags::control};
  EXPECT_NE(told(hotkey_slots::correct, pause), "");
  EXPECT_EQ(told(hotkey_slots::manualSwitch, pause).find("переключение"), std::string::npos);
  settings_->manualSwitchHotkey.set({17, event_flags::command});
  settings_->pauseAsManualSwitch.set(false);
  EXPECT_EQ(told(hotkey_slots::correct, pause), "");
}

TEST_F(HotkeyConflictsTest, AnotherProgramIsNamedUntilTheKeysAreOthers) {
  EXPECT_EQ(told(hotkey_slots::translate2, {17, event_flags::control}),
            "⌃T уже занято: Это сочетание есть и у другой программы (терминал): теперь его "
            "получает Kivra.");
  EXPECT_EQ(told(hotkey_slots::translate2, {17, event_flags::option}), "");
}

}  // namespace
}  // namespace kivra
