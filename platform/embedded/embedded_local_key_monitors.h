#pragma once

#include <memory>
#include <vector>

#include "platform/local_key_monitors.h"

namespace kivra::embedded {

/// Monitors of the keys that go to the program's own windows. On this desktop they go there for as
/// long as the program monitors them, and to the application in front otherwise.
class EmbeddedLocalKeyMonitors : public LocalKeyMonitors {
 public:
  /// True when no monitor dropped the event.
  bool pass(const Event& event) const;

  std::shared_ptr<LocalKeyMonitor> addLocalMonitor(
      std::uint64_t mask, std::function<EventVerdict(const Event&)> handler) override;
  void removeMonitor(const std::shared_ptr<LocalKeyMonitor>& monitor) override;

 private:
  struct Monitor;

  std::vector<std::shared_ptr<const Monitor>> monitors_;
};

}  // namespace kivra::embedded
