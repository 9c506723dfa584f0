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

void EmbeddedSession::log(std::string_view line) {
  effects_.report([&] { return Json{{"log", line}}; });
}

}  // namespace kivra::embedded
