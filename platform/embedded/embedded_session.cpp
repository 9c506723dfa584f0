#include "platform/embedded/embedded_session.h"

namespace kivra::embedded {

std::vector<std::int32_t> EmbeddedSession::runningApplications(std::string_view identifier) {
  if (identifier != bundleIdentifier()) return {};
  auto pids = otherInstances_;
  pids.insert(pids.begin(), ownPid);
  return pids;
}

void EmbeddedSession::terminate() {
  isTerminated_ = true;
  effects_.report([] { return Json{{"terminate", true}}; });
}

bool EmbeddedSession::isProcessTrustedWithOptions(bool prompt) {
  if (prompt) effects_.report([] { return Json{{"prompt", "accessibility"}}; });
  return accessibilityGranted_;
}

bool EmbeddedSession::requestAccess() {
  effects_.report([] { return Json{{"prompt", "inputMonitoring"}}; });
  return inputMonitoringGranted_;
}

void EmbeddedSession::open(std::string_view url) {
  effects_.report([&] { return Json{{"open", url}}; });
}

void EmbeddedSession::log(std::string_view line) {
  effects_.report([&] { return Json{{"log", line}}; });
}

}  // namespace kivra::embedded
