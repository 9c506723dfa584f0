#pragma once

#include <optional>
#include <string>

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
};

}  // namespace kivra
