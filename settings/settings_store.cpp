#include "settings/settings_store.h"

namespace kivra {

namespace {

/// The value that the JSON data under the key encodes.
template <class T>
std::optional<T> decodedData(const UserDefaults& defaults, const std::string& key) {
  const auto data = defaults.dataForKey(key);
  return data ? T::decoded(data->bytes) : std::nullopt;
}

}  // namespace

std::optional<bool> StoredForm<bool>::read(const UserDefaults& defaults, const std::string& key) {
  return defaults.boolForKey(key);
}
void StoredForm<bool>::write(UserDefaults& defaults, const std::string& key, bool value) {
  defaults.set(value, key);
}

std::optional<std::string> StoredForm<std::string>::read(const UserDefaults& defaults,
                                                         const std::string& key) {
  return defaults.stringForKey(key);
}
void StoredForm<std::string>::write(UserDefaults& defaults, const std::string& key,
                                    const std::string& value) {
  defaults.set(value, key);
}

std::optional<std::vector<std::string>> StoredForm<std::vector<std::string>>::read(
    const UserDefaults& defaults, const std::string& key) {
  return defaults.stringArrayForKey(key);
}
void StoredForm<std::vector<std::string>>::write(UserDefaults& defaults, const std::string& key,
                                                 const std::vector<std::string>& value) {
  defaults.set(value, key);
}

std::optional<EngineKind> StoredForm<EngineKind>::read(const UserDefaults& defaults,
                                                       const std::string& key) {
  const auto name = defaults.stringForKey(key);
  return name ? engineKind(*name) : std::nullopt;
}
void StoredForm<EngineKind>::write(UserDefaults& defaults, const std::string& key,
                                   EngineKind value) {
  defaults.set(std::string(rawValue(value)), key);
}

std::optional<Hotkey> StoredForm<Hotkey>::read(const UserDefaults& defaults,
                                               const std::string& key) {
  return decodedData<Hotkey>(defaults, key);
}
void StoredForm<Hotkey>::write(UserDefaults& defaults, const std::string& key,
                               const Hotkey& value) {
  defaults.set(Data{value.encoded()}, key);
}

std::optional<ModifierCombo> StoredForm<ModifierCombo>::read(const UserDefaults& defaults,
                                                             const std::string& key) {
  return decodedData<ModifierCombo>(defaults, key);
}
void StoredForm<ModifierCombo>::write(UserDefaults& defaults, const std::string& key,
                                      const ModifierCombo& value) {
  defaults.set(Data{value.encoded()}, key);
}

const std::vector<std::string>& defaultSkipBundleIDs() {
  static const std::vector<std::string> identifiers = {
      "com.apple.dt.Xcode",    "com.jetbrains.",       "com.microsoft.VSCode", "com.apple.Terminal",
      "com.googlecode.iterm2", "dev.warp.Warp-Stable", "com.valvesoftware.",
  };
  return identifiers;
}

SettingsStore::SettingsStore(UserDefaults& defaults) : defaults_(defaults) {}

}  // namespace kivra
