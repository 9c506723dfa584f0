#pragma once

#include <QKeyEvent>
#include <functional>
#include <map>
#include <memory>

#include "platform/monitor_list.h"

namespace kivra::qt {

/// Monitors of the keys that arrive at the program's windows. Needs a QApplication.
class QtLocalKeyMonitors : public MonitorList {
 public:
  /// `areKeysReported` tells whether every key of the user is given to `take` besides: then keys
  /// that only arrive at a window are of the program's own making, and no monitor sees them.
  explicit QtLocalKeyMonitors(std::function<bool()> areKeysReported = [] { return false; });
  ~QtLocalKeyMonitors() override;

  std::shared_ptr<LocalKeyMonitor> addLocalMonitor(
      std::uint64_t mask, std::function<EventVerdict(const Event&)> handler) override;

  /// A key that the user pressed or released in one of the program's windows, which it has reached
  /// already or is about to. True: it is the monitors' alone.
  bool take(const Event& event);

 private:
  class Filter;

  bool arrives(const QKeyEvent& event);
  bool isLateArrival(std::uint16_t key);

  std::function<bool()> areKeysReported_;
  std::map<std::uint16_t, int> awaited_;  // presses that were taken and have yet to arrive
  std::unique_ptr<Filter> filter_;
};

}  // namespace kivra::qt
