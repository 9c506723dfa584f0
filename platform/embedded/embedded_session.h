#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/application.h"
#include "platform/embedded/effects.h"
#include "platform/embedded/embedded_application.h"
#include "platform/log.h"
#include "platform/privacy.h"
#include "platform/workspace.h"

namespace kivra::embedded {

/// The small services of the login session: the log, the permissions, the running programs.
class EmbeddedSession : public Application, public Log, public Privacy, public Workspace {
 public:
  EmbeddedSession(Effects& effects, EmbeddedApplication& front)
      : effects_(effects), front_(front) {}

  void setAccessibilityGranted(bool granted) { accessibilityGranted_ = granted; }
  void setInputMonitoringGranted(bool granted) { inputMonitoringGranted_ = granted; }
  bool areBothPermissionsGranted() const {
    return accessibilityGranted_ && inputMonitoringGranted_;
  }

  /// Another instance of the program runs.
  void addInstance(std::int32_t pid) { otherInstances_.push_back(pid); }

  bool isTerminated() const { return isTerminated_; }

  std::optional<std::string> bundleIdentifier() override { return "org.example.Kivra"; }
  std::int32_t processIdentifier() override { return ownPid; }
  std::vector<std::int32_t> runningApplications(std::string_view bundleIdentifier) override;
  void activateIgnoringOtherApps() override {}
  void terminate() override;

  void log(std::string_view line) override;

  bool isProcessTrusted() override { return accessibilityGranted_; }
  bool isProcessTrustedWithOptions(bool prompt) override;
  AccessType checkAccess() override {
    return inputMonitoringGranted_ ? AccessType::granted : AccessType::denied;
  }
  bool requestAccess() override;
  std::string privacyPaneAddress() override {
    return "x-apple.systempreferences:com.apple.preference.security?";
  }

  std::optional<std::string> frontmostBundleIdentifier() override {
    return front_.front().identifier;
  }
  bool isSecureEventInputEnabled() override { return front_.front().secure; }
  std::uint64_t placesOfCursor() override { return front_.placesOfCursor(); }
  void open(std::string_view url) override;

 private:
  // No process that a script may name.
  static constexpr std::int32_t ownPid = -1;

  Effects& effects_;
  EmbeddedApplication& front_;
  bool accessibilityGranted_ = true;
  bool inputMonitoringGranted_ = true;
  bool isTerminated_ = false;
  std::vector<std::int32_t> otherInstances_;
};

}  // namespace kivra::embedded
