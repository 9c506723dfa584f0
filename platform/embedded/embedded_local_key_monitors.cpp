#include "platform/embedded/embedded_local_key_monitors.h"

#include <algorithm>
#include <utility>

namespace kivra::embedded {

struct EmbeddedLocalKeyMonitors::Monitor : LocalKeyMonitor {
  Monitor(std::uint64_t eventMask, std::function<EventVerdict(const Event&)> eventHandler)
      : mask(eventMask), handler(std::move(eventHandler)) {}

  std::uint64_t mask;
  std::function<EventVerdict(const Event&)> handler;
};

bool EmbeddedLocalKeyMonitors::pass(const Event& event) const {
  const auto bit = 1ULL << static_cast<std::uint32_t>(event.type);
  const auto current = monitors_;  // a handler may remove its own monitor
  return std::ranges::none_of(current, [&](const auto& monitor) {
    return (monitor->mask & bit) != 0 && monitor->handler(event) == EventVerdict::drop;
  });
}

std::shared_ptr<LocalKeyMonitor> EmbeddedLocalKeyMonitors::addLocalMonitor(
    std::uint64_t mask, std::function<EventVerdict(const Event&)> handler) {
  auto monitor = std::make_shared<Monitor>(mask, std::move(handler));
  monitors_.push_back(monitor);
  return monitor;
}

void EmbeddedLocalKeyMonitors::removeMonitor(const std::shared_ptr<LocalKeyMonitor>& monitor) {
  std::erase(monitors_, monitor);
}

}  // namespace kivra::embedded
