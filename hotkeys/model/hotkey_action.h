#pragma once

#include <string>
#include <variant>

namespace kivra {

/// What a hotkey or a combination triggers.
struct HotkeyAction {
  /// Translate the selected text into the language with this code ("EN-US", "DE").
  struct TranslateTo {
    std::string language;
    bool operator==(const TranslateTo&) const = default;
  };
  /// Correct typos and punctuation of the selected text.
  struct Correct {
    bool operator==(const Correct&) const = default;
  };

  std::variant<TranslateTo, Correct> kind;

  static HotkeyAction translateTo(std::string language) {
    return {TranslateTo{std::move(language)}};
  }
  static HotkeyAction correct() { return {Correct{}}; }

  bool operator==(const HotkeyAction&) const = default;
};

}  // namespace kivra
