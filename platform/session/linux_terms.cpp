#include "platform/session/linux_terms.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kivra {

namespace {

constexpr std::array<std::pair<std::uint16_t, const char*>, 38> keyNames = {{
    {36, "Enter"},
    {48, "Tab"},
    {51, "Backspace"},
    {53, "Esc"},
    {57, "Caps Lock"},
    {63, "Fn"},
    {110, "Menu"},
    {114, "Insert"},
    {117, "Delete"},
    {115, "Home"},
    {119, "End"},
    {116, "Page Up"},
    {121, "Page Down"},
    {105, "Print Screen"},
    {107, "Scroll Lock"},
    {106, "F16"},
    {64, "F17"},
    {71, "Num Lock"},
    {76, "Num Enter"},
    {65, "Num ."},
    {67, "Num *"},
    {69, "Num +"},
    {75, "Num /"},
    {78, "Num −"},
    {81, "Num ="},
    {95, "Num ,"},
    {82, "Num 0"},
    {83, "Num 1"},
    {84, "Num 2"},
    {85, "Num 3"},
    {86, "Num 4"},
    {87, "Num 5"},
    {88, "Num 6"},
    {89, "Num 7"},
    {91, "Num 8"},
    {92, "Num 9"},
    {93, "¥"},
    {94, "ろ"},
}};

}  // namespace

std::string LinuxTerms::term(Term term) const {
  switch (term) {
    case Term::control:
      return "Ctrl";
    case Term::option:
      return "Alt";
    case Term::shift:
      return "Shift";
    case Term::command:
      return "Super";
    case Term::fn:
      return "Menu";  // the key that stands for it
    case Term::betweenKeys:
      return "+";
    case Term::escapeKey:
      return "Esc";
    case Term::shortcutExample:
      return "Ctrl+Shift+S";
    case Term::correctionExample:
      return "Ctrl+Alt+C";
    case Term::spellingDictionary:
      return "словарь Hunspell";
    case Term::systemSettings:
      return "Настройки системы…";
    case Term::openSystemSettings:
      return "Открыть настройки системы…";
    case Term::inKeychain:
      return "в связке ключей";
    case Term::offlineTranslator:
      return "Apertium / LibreTranslate (офлайн)";
    case Term::localModel:
      return "Локальная модель";
    case Term::localModelMissing:
      return "Локальная модель не отвечает";
    case Term::withoutLocalModel:
      return "без локальной модели";
  }
  return "";
}

std::optional<std::string> LinuxTerms::keyName(std::uint16_t keyCode) const {
  const auto* const found =
      std::ranges::find(keyNames, keyCode, &decltype(keyNames)::value_type::first);
  return found == keyNames.end() ? std::nullopt : std::optional<std::string>(found->second);
}

}  // namespace kivra
