#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/input_sources.h"

struct xkb_keymap;

namespace kivra {

/// Layout data read from the xkb rules of this machine.
class XkbLayout : public KeyboardLayoutData {
 public:
  /// The layout with an xkb name, with a variant in parentheses where wanted ("us",
  /// "ru(phonetic)"); null when there is no such layout.
  static std::shared_ptr<const XkbLayout> named(const std::string& name);

  /// One group of a keymap, of which it becomes an owner.
  explicit XkbLayout(xkb_keymap* keymap, std::uint32_t group = 0)
      : keymap_(keymap), group_(group) {}
  ~XkbLayout() override;
  XkbLayout(const XkbLayout&) = delete;
  XkbLayout& operator=(const XkbLayout&) = delete;

  /// The symbol on the key (an xkb keysym), 0 for none. Num Lock counts as on, so that the keypad
  /// gives digits.
  std::uint32_t symbol(std::uint16_t virtualKey, bool shift) const;

  /// What a press of the key produces; nothing for a key without a character and for a dead key.
  std::optional<std::string> character(std::uint16_t virtualKey, bool shift) const;

 private:
  xkb_keymap* keymap_;  // owned
  std::uint32_t group_;
};

}  // namespace kivra
