#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/privacy.h"
#include "platform/run_loop.h"
#include "platform/workspace.h"
#include "support/observable.h"

namespace kivra {

/// The pages on which the user changes the permissions.
namespace privacy_panes {
inline constexpr const char* accessibility = "Privacy_Accessibility";
inline constexpr const char* inputMonitoring = "Privacy_ListenEvent";
}  // namespace privacy_panes

/// The two permissions as last checked, and the poll that waits for both.
class Permissions : public Observable, public std::enable_shared_from_this<Permissions> {
 public:
  Permissions(Privacy& privacy, Workspace& workspace, RunLoop& runLoop);

  bool accessibilityGranted() const { return accessibilityGranted_; }
  bool inputMonitoringGranted() const { return inputMonitoringGranted_; }
  bool areGranted() const { return accessibilityGranted_ && inputMonitoringGranted_; }

  /// Asks the system for both, without a prompt.
  void refresh();

  /// Checks once a second until both are granted, then calls `completion`. While a poll runs, a
  /// further one is not started and its completion is dropped.
  void startPolling(std::function<void()> completion);

  /// Have the system ask the user; what comes of it shows at a later check.
  void requestAccessibility();
  void requestInputMonitoring();

  void openPrivacyPane(std::string_view anchor);

  /// What this desktop says that the user can do for a missing permission; may be empty.
  std::string accessibilityRemedy() { return privacy_.accessibilityRemedy(); }
  std::string inputMonitoringRemedy() { return privacy_.inputMonitoringRemedy(); }

  /// What this desktop says that keeps the program from working; mostly empty.
  std::string impediment() { return privacy_.impediment(); }

  /// What this desktop says, if it does, of all that the program needs, a line each.
  bool hasDiagnosis() { return privacy_.hasDiagnosis(); }
  std::vector<std::string> diagnosis() { return privacy_.diagnosis(); }

 private:
  void poll();

  Privacy& privacy_;
  Workspace& workspace_;
  RunLoop& runLoop_;
  bool accessibilityGranted_ = false;
  bool inputMonitoringGranted_ = false;
  std::unique_ptr<Timer> pollTimer_;
  std::function<void()> completion_;
};

}  // namespace kivra
