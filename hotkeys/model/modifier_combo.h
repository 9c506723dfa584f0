#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "platform/events.h"
#include "platform/terms.h"

namespace kivra {

/// A modifier key of a combination; the order of the cases is the order of display.
enum class ComboModifier : std::uint8_t { control, option, shift, command, fn };

inline constexpr std::array<ComboModifier, 5> allComboModifiers = {
    ComboModifier::control, ComboModifier::option, ComboModifier::shift, ComboModifier::command,
    ComboModifier::fn};

/// The name under which the modifier is stored.
std::string_view rawValue(ComboModifier modifier);
std::optional<ComboModifier> comboModifier(std::string_view rawValue);

/// Modifier keys held together and released, with no ordinary key; fewer than two switch the
/// combination off.
class ModifierCombo {
 public:
  constexpr ModifierCombo() = default;
  constexpr ModifierCombo(std::initializer_list<ComboModifier> modifiers) {
    for (const auto modifier : modifiers) insert(modifier);
  }

  static constexpr ModifierCombo off() { return {}; }

  /// The combinations offered for choice, in the order of the list.
  static const std::array<ModifierCombo, 8>& presets();

  constexpr bool operator==(const ModifierCombo&) const = default;

  constexpr bool contains(ComboModifier modifier) const { return (flags_ & flag(modifier)) != 0; }
  constexpr void insert(ComboModifier modifier) { flags_ |= flag(modifier); }

  /// Whether the flags of a modifier change hold all members, of which there are two or more.
  constexpr bool isHeld(std::uint64_t eventFlags) const {
    return isOn() && (eventFlags & flags_) == flags_;
  }

  /// Two or more members.
  constexpr bool isOn() const { return (flags_ & (flags_ - 1)) != 0; }

  /// "⌃fn" in the desktop's words, or "Выкл" for a combination that is switched off.
  std::string displayText(const Terms& terms) const;

  /// The stored form: a compact JSON object.
  std::string encoded() const;

  /// Nothing when `bytes` is not the stored form of a combination.
  static std::optional<ModifierCombo> decoded(std::string_view bytes);

 private:
  static constexpr std::uint64_t flag(ComboModifier modifier) {
    constexpr std::array flags = {event_flags::control, event_flags::option, event_flags::shift,
                                  event_flags::command, event_flags::fn};
    return flags[static_cast<std::size_t>(modifier)];
  }

  std::uint64_t flags_ = 0;  // the set, as the event flags of its members
};

}  // namespace kivra
