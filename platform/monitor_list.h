#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/local_key_monitors.h"

namespace kivra {

/// The monitors of a desktop that hands them the events itself.
class MonitorList : public LocalKeyMonitors {
 public:
  std::shared_ptr<LocalKeyMonitor> addLocalMonitor(
      std::uint64_t mask, std::function<EventVerdict(const Event&)> handler) override {
    return monitors_.emplace_back(std::make_shared<Monitor>(mask, std::move(handler)));
  }
  void removeMonitor(const std::shared_ptr<LocalKeyMonitor>& monitor) override {
    std::erase(monitors_, monitor);
  }
  bool isMonitoring() const { return !monitors_.empty(); }

  /// Whether the event is to arrive.
  bool pass(const Event& event) const {
    const auto bit = 1ULL << static_cast<std::uint32_t>(event.type);
    const auto current = monitors_;  // a handler may remove its own monitor
    return std::ranges::none_of(current, [&](const auto& monitor) {
      return (monitor->mask & bit) != 0 && monitor->handler(event) == EventVerdict::drop;
    });
  }

 private:
  struct Monitor : LocalKeyMonitor {
    Monitor(std::uint64_t eventMask, std::function<EventVerdict(const Event&)> eventHandler)
        : mask(eventMask), handler(std::move(eventHandler)) {}

    std::uint64_t mask;
    std::function<EventVerdict(const Event&)> handler;
  };

  std::vector<std::shared_ptr<Monitor>> monitors_;
};

}  // namespace kivra
