#include "set_property.h"

#include <functional>
#include <limits>
#include <map>

namespace kivra::desk {

namespace {

template <class T>
T valueOf(const Operation& operation);

template <>
bool valueOf(const Operation& operation) {
  return operation.boolean("value");
}

template <>
std::string valueOf(const Operation& operation) {
  return operation.string("value");
}

template <>
std::vector<std::string> valueOf(const Operation& operation) {
  return operation.strings("value");
}

template <>
EngineKind valueOf(const Operation& operation) {
  const auto kind = engineKind(operation.string("value"));
  if (!kind) throw ScriptError("unknown engine");
  return *kind;
}

template <>
Hotkey valueOf(const Operation& operation) {
  const auto value = operation.element(operation.object("value"));
  return {static_cast<std::uint16_t>(
              value.integer("keyCode", std::numeric_limits<std::uint16_t>::max())),
          value.integer("modifiers", std::numeric_limits<std::uint64_t>::max())};
}

template <>
ModifierCombo valueOf(const Operation& operation) {
  ModifierCombo combo;
  for (const auto& name : operation.strings("value")) {
    const auto modifier = comboModifier(name);
    if (!modifier) throw ScriptError("unknown modifier: " + name);
    combo.insert(*modifier);
  }
  return combo;
}

using Assign = std::function<void(SettingsStore&, const Operation&)>;

template <class T>
Assign assign(Setting<T> SettingsStore::*property) {
  return [property](SettingsStore& settings, const Operation& operation) {
    (settings.*property).set(valueOf<T>(operation));
  };
}

const std::map<std::string, Assign>& properties() {
  static const std::map<std::string, Assign> all = {
      {"isEnabled", assign(&SettingsStore::isEnabled)},
      {"pauseAsManualSwitch", assign(&SettingsStore::pauseAsManualSwitch)},
      {"autoSwitchEnabled", assign(&SettingsStore::autoSwitchEnabled)},
      {"autoFixDoubleCapitals", assign(&SettingsStore::autoFixDoubleCapitals)},
      {"autoCorrectTypos", assign(&SettingsStore::autoCorrectTypos)},
      {"extendedRules", assign(&SettingsStore::extendedRules)},
      {"skipBundleIDs", assign(&SettingsStore::skipBundleIDs)},
      {"translationEngine", assign(&SettingsStore::translationEngine)},
      {"translateCombo", assign(&SettingsStore::translateCombo)},
      {"ctrlFnTargetLang", assign(&SettingsStore::ctrlFnTargetLang)},
      {"correctCombo", assign(&SettingsStore::correctCombo)},
      {"manualSwitchHotkey", assign(&SettingsStore::manualSwitchHotkey)},
      {"translateHotkey1", assign(&SettingsStore::translateHotkey1)},
      {"translateHotkey1Lang", assign(&SettingsStore::translateHotkey1Lang)},
      {"translateHotkey2", assign(&SettingsStore::translateHotkey2)},
      {"translateHotkey2Lang", assign(&SettingsStore::translateHotkey2Lang)},
      {"correctHotkey", assign(&SettingsStore::correctHotkey)},
  };
  return all;
}

}  // namespace

void setProperty(SettingsStore& settings, const Operation& operation) {
  const auto name = operation.string("property");
  const auto found = properties().find(name);
  if (found == properties().end()) throw ScriptError("unknown property: " + name);
  found->second(settings, operation);
}

}  // namespace kivra::desk
