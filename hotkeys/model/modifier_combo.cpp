#include "hotkeys/model/modifier_combo.h"

#include <algorithm>

#include "support/json.h"

namespace kivra {

namespace {

constexpr std::array<std::string_view, 5> rawValues = {"control", "option", "shift", "command",
                                                       "fn"};
constexpr std::array<Term, 5> symbols = {Term::control, Term::option, Term::shift, Term::command,
                                         Term::fn};

}  // namespace

std::string_view rawValue(ComboModifier modifier) {
  return rawValues[static_cast<std::size_t>(modifier)];
}

std::optional<ComboModifier> comboModifier(std::string_view rawValue) {
  const auto* found = std::ranges::find(rawValues, rawValue);
  if (found == rawValues.end()) return std::nullopt;
  return static_cast<ComboModifier>(found - rawValues.begin());
}

const std::array<ModifierCombo, 8>& ModifierCombo::presets() {
  using enum ComboModifier;
  static const std::array<ModifierCombo, 8> all = {
      ModifierCombo{control, fn},    ModifierCombo{option, fn},       ModifierCombo{command, fn},
      ModifierCombo{fn, shift},      ModifierCombo{control, shift},   ModifierCombo{option, shift},
      ModifierCombo{command, shift}, ModifierCombo{control, command},
  };
  return all;
}

std::string ModifierCombo::displayText(const Terms& terms) const {
  if (!isOn()) return "Выкл";
  std::string shown;
  for (const auto modifier : allComboModifiers) {
    if (!contains(modifier)) continue;
    if (!shown.empty()) shown += terms.term(Term::betweenKeys);
    shown += terms.term(symbols[static_cast<std::size_t>(modifier)]);
  }
  return shown;
}

std::string ModifierCombo::encoded() const {
  auto names = json::Value::array();
  for (const auto modifier : allComboModifiers) {
    if (contains(modifier)) names.push_back(rawValue(modifier));
  }
  return json::encode({{"modifiers", names}});
}

std::optional<ModifierCombo> ModifierCombo::decoded(std::string_view bytes) {
  const auto value = json::parse(bytes);
  const auto* member = value ? json::member(*value, "modifiers") : nullptr;
  const auto names = member != nullptr ? json::stringArray(*member) : std::nullopt;
  if (!names) return std::nullopt;
  ModifierCombo combo;
  for (const auto& name : *names) {
    const auto modifier = comboModifier(name);
    if (!modifier) return std::nullopt;
    combo.insert(*modifier);
  }
  return combo;
}

}  // namespace kivra
