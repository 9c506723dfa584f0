#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "platform/log.h"
#include "platform/status_bar.h"

namespace kivra::qt {

/// The desktop's tray: a host of status notifier items where the session bus has one, else a tray
/// of the old kind. While there is neither the item waits for one. Needs a QApplication.
class QtStatusBar : public StatusBar {
 public:
  /// `oldTray` gives the display's tray of the old kind; nothing while there is none.
  QtStatusBar(Log& log, std::function<std::optional<SystemTray>()> oldTray)
      : log_(log), oldTray_(std::move(oldTray)) {}

  std::unique_ptr<StatusItem> statusItem(double length) override;

 private:
  Log& log_;
  std::function<std::optional<SystemTray>()> oldTray_;
};

}  // namespace kivra::qt
