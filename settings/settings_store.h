#pragma once

#include <string>
#include <vector>

#include "hotkeys/model/hotkey.h"
#include "hotkeys/model/modifier_combo.h"
#include "settings/engine_kind.h"
#include "settings/setting.h"
#include "support/observable.h"

namespace kivra {

template <>
struct StoredForm<bool> {
  static std::optional<bool> read(const UserDefaults& defaults, const std::string& key);
  static void write(UserDefaults& defaults, const std::string& key, bool value);
};
template <>
struct StoredForm<std::string> {
  static std::optional<std::string> read(const UserDefaults& defaults, const std::string& key);
  static void write(UserDefaults& defaults, const std::string& key, const std::string& value);
};
template <>
struct StoredForm<std::vector<std::string>> {
  static std::optional<std::vector<std::string>> read(const UserDefaults& defaults,
                                                      const std::string& key);
  static void write(UserDefaults& defaults, const std::string& key,
                    const std::vector<std::string>& value);
};
template <>
struct StoredForm<EngineKind> {
  static std::optional<EngineKind> read(const UserDefaults& defaults, const std::string& key);
  static void write(UserDefaults& defaults, const std::string& key, EngineKind value);
};
template <>
struct StoredForm<Hotkey> {
  static std::optional<Hotkey> read(const UserDefaults& defaults, const std::string& key);
  static void write(UserDefaults& defaults, const std::string& key, const Hotkey& value);
};
template <>
struct StoredForm<ModifierCombo> {
  static std::optional<ModifierCombo> read(const UserDefaults& defaults, const std::string& key);
  static void write(UserDefaults& defaults, const std::string& key, const ModifierCombo& value);
};

/// Applications in which nothing is corrected: terminals, development environments, games. An entry
/// that ends with "." stands for every identifier that begins with it.
const std::vector<std::string>& defaultSkipBundleIDs();

/// Every user setting. Values are read from the defaults database when the store is made and stand
/// in memory from then on; each assignment announces itself to the observers, then writes its own
/// key. A stored value that is absent or unreadable gives the default and stays as it is until the
/// setting is next assigned.
class SettingsStore : public Observable {
 public:
  explicit SettingsStore(UserDefaults& defaults);

 private:
  UserDefaults& defaults_;

  template <class T>
  Setting<T> setting(const char* key, T fallback) {
    return Setting<T>(defaults_, key, std::move(fallback), [this] { willChange(); });
  }

  /// For a default that also answers other readers of the key.
  template <class T>
  Setting<T> registeredSetting(const char* key, T value) {
    defaults_.registerDefault(key, value);
    return setting<T>(key, std::move(value));
  }

  static constexpr std::uint64_t controlOption = event_flags::control | event_flags::option;

 public:
  Setting<bool> isEnabled = registeredSetting("kivra.isEnabled", true);
  Setting<bool> pauseAsManualSwitch = registeredSetting("kivra.pauseAsManualSwitch", true);
  Setting<bool> autoSwitchEnabled = registeredSetting("kivra.autoSwitchEnabled", true);
  Setting<bool> autoFixDoubleCapitals = registeredSetting("kivra.autoFixDoubleCapitals", true);
  Setting<bool> autoCorrectTypos = registeredSetting("kivra.autoCorrectTypos", true);
  /// Punctuation ends and surrounds words, two capitals are mended in the wrong layout, an undo is
  /// made only where it fits.
  Setting<bool> extendedRules = setting("kivra.extendedRules", false);
  Setting<std::vector<std::string>> skipBundleIDs =
      registeredSetting("kivra.skipBundleIDs", defaultSkipBundleIDs());
  Setting<EngineKind> translationEngine =
      setting("kivra.translationEngine", EngineKind::appleTranslate);
  Setting<ModifierCombo> translateCombo =
      setting("kivra.combo.translate", ModifierCombo{ComboModifier::control, ComboModifier::fn});
  Setting<std::string> ctrlFnTargetLang = setting<std::string>("kivra.ctrlFnTargetLang", "EN-US");
  Setting<ModifierCombo> correctCombo =
      setting("kivra.combo.correct", ModifierCombo{ComboModifier::fn, ComboModifier::shift});
  Setting<Hotkey> manualSwitchHotkey =
      setting("kivra.hotkey.manualSwitch", Hotkey{35, controlOption});
  // The keys of the two slots keep their first languages' names whatever the slots are set to.
  Setting<Hotkey> translateHotkey1 = setting("kivra.hotkey.translateEN", Hotkey{14, controlOption});
  Setting<std::string> translateHotkey1Lang =
      setting<std::string>("kivra.hotkey.translate1.lang", "EN-US");
  Setting<Hotkey> translateHotkey2 = setting("kivra.hotkey.translateDE", Hotkey{2, controlOption});
  Setting<std::string> translateHotkey2Lang =
      setting<std::string>("kivra.hotkey.translate2.lang", "DE");
  Setting<Hotkey> correctHotkey = setting("kivra.hotkey.correct", Hotkey{8, controlOption});
};

}  // namespace kivra
