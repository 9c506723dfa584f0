#pragma once

#include <QObject>
#include <memory>
#include <vector>

#include "platform/local_key_monitors.h"

namespace kivra::qt {

/// Monitors of the keys that arrive at the program's windows. Needs a QApplication.
class QtLocalKeyMonitors : public LocalKeyMonitors {
 public:
  QtLocalKeyMonitors();
  ~QtLocalKeyMonitors() override;

  std::shared_ptr<LocalKeyMonitor> addLocalMonitor(
      std::uint64_t mask, std::function<EventVerdict(const Event&)> handler) override;
  void removeMonitor(const std::shared_ptr<LocalKeyMonitor>& monitor) override;

 private:
  class Filter;
  struct Monitor;

  bool pass(const Event& event) const;

  std::vector<std::shared_ptr<const Monitor>> monitors_;
  std::unique_ptr<Filter> filter_;
};

}  // namespace kivra::qt
