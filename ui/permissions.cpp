#include "ui/permissions.h"

#include <chrono>
#include <utility>

namespace kivra {

namespace {
constexpr std::chrono::seconds pollInterval(1);
}

Permissions::Permissions(Privacy& privacy, Workspace& workspace, RunLoop& runLoop)
    : privacy_(privacy), workspace_(workspace), runLoop_(runLoop) {
  refresh();
}

void Permissions::refresh() {
  willChange();
  accessibilityGranted_ = privacy_.isProcessTrusted();
  inputMonitoringGranted_ = privacy_.checkAccess() == AccessType::granted;
}

void Permissions::startPolling(std::function<void()> completion) {
  if (pollTimer_) return;
  completion_ = std::move(completion);
  pollTimer_ = runLoop_.scheduleRepeatingTimer(pollInterval, [weak = weak_from_this()] {
    if (const auto permissions = weak.lock()) permissions->poll();
  });
}

void Permissions::requestAccessibility() { privacy_.isProcessTrustedWithOptions(/*prompt=*/true); }

void Permissions::requestInputMonitoring() { privacy_.requestAccess(); }

void Permissions::openPrivacyPane(std::string_view anchor) {
  workspace_.open(privacy_.privacyPaneAddress().append(anchor));
}

void Permissions::poll() {
  refresh();
  if (!areGranted()) return;
  pollTimer_.reset();
  std::exchange(completion_, nullptr)();
}

}  // namespace kivra
