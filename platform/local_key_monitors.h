#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/event_tap.h"
#include "platform/events.h"

namespace kivra {

/// The handle of an installed monitor; destroying it does not remove the monitor.
class LocalKeyMonitor {
 public:
  virtual ~LocalKeyMonitor() = default;
};

/// Monitors of the events that are addressed to this program's own windows, before they arrive.
class LocalKeyMonitors {
 public:
  virtual ~LocalKeyMonitors() = default;

  /// Calls the handler for the event types whose bits (1 << type) are in `mask`; what it drops does
  /// not arrive. Null when no monitor can be had.
  virtual std::shared_ptr<LocalKeyMonitor> addLocalMonitor(
      std::uint64_t mask, std::function<EventVerdict(const Event&)> handler) = 0;
  virtual void removeMonitor(const std::shared_ptr<LocalKeyMonitor>& monitor) = 0;
};

}  // namespace kivra
