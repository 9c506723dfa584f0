#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/events.h"
#include "platform/terms.h"

namespace kivra {

/// The modifiers that count in a hotkey.
inline constexpr std::uint64_t hotkeyModifiers =
    event_flags::shift | event_flags::control | event_flags::option | event_flags::command;

/// One key pressed together with modifier keys.
struct Hotkey {
  std::uint16_t keyCode = 0;    ///< virtual key code
  std::uint64_t modifiers = 0;  ///< modifier flag bits

  bool operator==(const Hotkey&) const = default;

  /// Whether a key-down with this code and these flags is the hotkey; flags other than Shift,
  /// Control, Option and Command do not count.
  bool matches(std::uint16_t eventKeyCode, std::uint64_t eventFlags) const {
    return eventKeyCode == keyCode && ((eventFlags ^ modifiers) & hotkeyModifiers) == 0;
  }

  /// The stored form: a compact JSON object.
  std::string encoded() const;

  /// Nothing when `bytes` is not the stored form of a hotkey.
  static std::optional<Hotkey> decoded(std::string_view bytes);
};

/// What a key produces in the English layout without Shift; nothing when it has no character.
using EnglishCharacter = std::function<std::optional<std::string>(std::uint16_t keyCode)>;

/// The name of a key: the desktop's, or else "↩", "F5", "P", or "#105" for a key whose character
/// cannot be shown.
std::string keyName(std::uint16_t keyCode, const EnglishCharacter& englishCharacter,
                    const Terms& terms);

/// The hotkey as shown to the user: "⌃⌥P".
std::string displayText(const Hotkey& hotkey, const EnglishCharacter& englishCharacter,
                        const Terms& terms);

}  // namespace kivra
