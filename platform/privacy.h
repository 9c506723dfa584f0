#pragma once

#include <string>
#include <vector>

namespace kivra {

/// Answers of `checkAccess`, with the platform's values.
enum class AccessType { granted = 0, denied = 1, unknown = 2 };

/// The two permissions without which no key can be seen or typed.
class Privacy {
 public:
  virtual ~Privacy() = default;

  /// Whether text and windows of other applications may be read and written; asks nobody.
  virtual bool isProcessTrusted() = 0;

  /// The same; with `prompt` the system asks the user for it when it is missing.
  virtual bool isProcessTrustedWithOptions(bool prompt) = 0;

  /// Whether the input of other applications may be listened to; asks nobody.
  virtual AccessType checkAccess() = 0;

  /// Asks the user to let the program listen; answers what is so far.
  virtual bool requestAccess() = 0;

  /// Where the user changes the permissions: the name of a page goes behind it.
  virtual std::string privacyPaneAddress() = 0;

  /// What the user can do for the missing permission where asking is not enough; mostly empty.
  virtual std::string accessibilityRemedy() { return {}; }
  virtual std::string inputMonitoringRemedy() { return {}; }

  /// What keeps the program from correcting anything now, whatever else seems to be in order: one
  /// line; mostly empty.
  virtual std::string impediment() { return {}; }

  /// What this desktop has of all that the program needs, and what mends what it lacks: a line
  /// each, for the user. Looks everywhere; whether there is anything to look for is known at once.
  virtual bool hasDiagnosis() { return false; }
  virtual std::vector<std::string> diagnosis() { return {}; }
};

}  // namespace kivra
