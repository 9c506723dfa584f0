#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct xkb_keymap;

namespace kivra::guard {

/// What a display tells the program of its keyboard.
class DisplayLayouts {
 public:
  virtual ~DisplayLayouts() = default;

  virtual bool isConnected() const = 0;

  /// The keyboard map of the session; the caller releases it. Null when it cannot be read.
  virtual xkb_keymap* newKeymap() = 0;

  /// What the map was made of, as in the X property _XKB_RULES_NAMES; empty where nobody tells.
  virtual std::string rulesNames() { return {}; }

  /// The group in effect; nothing where the display tells it to the application in front alone.
  virtual std::optional<std::uint32_t> group() { return std::nullopt; }
};

}  // namespace kivra::guard
