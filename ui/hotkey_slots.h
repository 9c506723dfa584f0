#pragma once

#include <array>

#include "settings/settings_store.h"

namespace kivra {

/// A hotkey that the user can record, by the title of its row.
struct HotkeySlot {
  const char* title;
  Setting<Hotkey> SettingsStore::*property;
};

namespace hotkey_slots {
inline constexpr HotkeySlot translate1{"Перевод №1", &SettingsStore::translateHotkey1};
inline constexpr HotkeySlot translate2{"Перевод №2", &SettingsStore::translateHotkey2};
inline constexpr HotkeySlot correct{"Исправление (запасной)", &SettingsStore::correctHotkey};
inline constexpr HotkeySlot manualSwitch{"Ручное переключение раскладки",
                                         &SettingsStore::manualSwitchHotkey};
inline constexpr std::array all = {translate1, translate2, correct, manualSwitch};
}  // namespace hotkey_slots

}  // namespace kivra
