#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/event_tap.h"

namespace kivra {

/// What the desktop says of the application that has the keyboard.
class Workspace {
 public:
  virtual ~Workspace() = default;

  /// The bundle identifier of the frontmost application; nothing when there is no such application
  /// or it has no identifier.
  virtual std::optional<std::string> frontmostBundleIdentifier() = 0;

  /// True while some application reads a password or otherwise keeps keys to itself.
  virtual bool isSecureEventInputEnabled() = 0;

  /// A number that grows whenever the cursor may have gone elsewhere without an event for the taps:
  /// another field has the focus, or the selection was set. Always 0 on a desktop that tells the
  /// taps of it.
  virtual std::uint64_t placesOfCursor() { return 0; }

  /// Who else on this desktop waits for the combination, in words for the user; empty for nobody,
  /// and where that cannot be found out.
  virtual std::string shortcutOwner(const KeyChord& /*keys*/) { return {}; }

  /// Opens the address with the program that the user has for it; nothing when there is none.
  virtual void open(std::string_view url) = 0;
};

}  // namespace kivra
