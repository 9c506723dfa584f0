#include "ui/hotkey_conflicts.h"

#include <string_view>
#include <utility>

#include "ui/hotkey_slots.h"

namespace kivra {

HotkeyConflicts::HotkeyConflicts(std::shared_ptr<SettingsStore> settings,
                                 EnglishCharacter englishCharacter, Workspace& workspace,
                                 Notifications& notifications, const Terms& terms)
    : settings_(std::move(settings)),
      englishCharacter_(std::move(englishCharacter)),
      workspace_(workspace),
      notifications_(notifications),
      terms_(terms) {}

void HotkeyConflicts::recorded(const std::string& title, const Hotkey& hotkey) {
  otherPrograms_[title] =
      workspace_.shortcutOwner({hotkey.keyCode, hotkey.modifiers & hotkeyModifiers});
  auto text = hint(title, hotkey);
  if (text.empty()) return;
  notifications_.show({.title = displayText(hotkey, englishCharacter_, terms_) + " уже занято",
                       .text = std::move(text)});
}

std::string HotkeyConflicts::hint(const std::string& title, const Hotkey& hotkey) const {
  if (const auto own = ownHotkey(title, hotkey); !own.empty()) {
    return "То же сочетание у «" + own + "»: сработает только одно из двух.";
  }
  const auto other = otherPrograms_.find(title);
  if (other == otherPrograms_.end() || other->second.empty()) return "";
  return "Это сочетание есть и у другой программы (" + other->second +
         "): теперь его получает Kivra.";
}

std::string HotkeyConflicts::ownHotkey(const std::string& title, const Hotkey& hotkey) const {
  for (const auto& slot : hotkey_slots::all) {
    const auto& taken = ((*settings_).*slot.property)();
    if (title != slot.title && taken.matches(hotkey.keyCode, hotkey.modifiers)) return slot.title;
  }
  const auto isPause = hotkey.keyCode == key_codes::pause && settings_->pauseAsManualSwitch();
  return isPause && title != hotkey_slots::manualSwitch.title ? hotkey_slots::manualSwitch.title
                                                              : "";
}

}  // namespace kivra
