#include "hotkeys/model/hotkey.h"

#include <algorithm>
#include <array>
#include <utility>

#include "support/json.h"
#include "support/text.h"

namespace kivra {

namespace {

constexpr std::array<std::pair<std::uint16_t, const char*>, 22> fixedNames = {{
    {36, "↩"},   {48, "⇥"},    {49, "Space"}, {51, "⌫"},    {53, "⎋"},   {113, "Pause"},
    {123, "←"},  {124, "→"},   {125, "↓"},    {126, "↑"},   {122, "F1"}, {120, "F2"},
    {99, "F3"},  {118, "F4"},  {96, "F5"},    {97, "F6"},   {98, "F7"},  {100, "F8"},
    {101, "F9"}, {109, "F10"}, {103, "F11"},  {111, "F12"},
}};

constexpr std::array<std::pair<std::uint64_t, Term>, 4> modifierTerms = {{
    {event_flags::control, Term::control},
    {event_flags::option, Term::option},
    {event_flags::shift, Term::shift},
    {event_flags::command, Term::command},
}};

/// Return, Delete and others: characters that show nothing.
bool isControlCharacter(const std::string& character) {
  const auto scalar = text::firstScalar(character);
  return scalar && (*scalar < U' ' || *scalar == U'\x7F');
}

}  // namespace

std::string Hotkey::encoded() const {
  return json::encode({{"keyCode", keyCode}, {"modifiers", modifiers}});
}

std::optional<Hotkey> Hotkey::decoded(std::string_view bytes) {
  const auto value = json::parse(bytes);
  if (!value) return std::nullopt;
  const auto keyCode = json::integerMember<std::uint16_t>(*value, "keyCode");
  const auto modifiers = json::integerMember<std::uint64_t>(*value, "modifiers");
  if (!keyCode || !modifiers) return std::nullopt;
  return Hotkey{*keyCode, *modifiers};
}

std::string keyName(std::uint16_t keyCode, const EnglishCharacter& englishCharacter,
                    const Terms& terms) {
  if (const auto name = terms.keyName(keyCode)) return *name;
  const auto* fixed =
      std::ranges::find(fixedNames, keyCode, &decltype(fixedNames)::value_type::first);
  if (fixed != fixedNames.end()) return fixed->second;
  const auto character = englishCharacter(keyCode);
  if (character && !isControlCharacter(*character)) return text::uppercased(*character);
  return "#" + std::to_string(keyCode);
}

std::string displayText(const Hotkey& hotkey, const EnglishCharacter& englishCharacter,
                        const Terms& terms) {
  std::string shown;
  for (const auto& [bit, term] : modifierTerms) {
    if ((hotkey.modifiers & bit) != 0) shown += terms.term(term) + terms.term(Term::betweenKeys);
  }
  return shown + keyName(hotkey.keyCode, englishCharacter, terms);
}

}  // namespace kivra
