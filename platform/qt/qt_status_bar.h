#pragma once

#include <functional>
#include <utility>

#include "platform/log.h"
#include "platform/status_bar.h"

namespace kivra::qt {

/// The desktop's tray: a host of status notifier items where the session bus has one, else a tray
/// of the old kind. While there is neither the item waits for one. Needs a QApplication.
class QtStatusBar : public StatusBar {
 public:
  /// `hasOldTray` tells whether the display has a tray of the old kind.
  QtStatusBar(Log& log, std::function<bool()> hasOldTray)
      : log_(log), hasOldTray_(std::move(hasOldTray)) {}

  std::unique_ptr<StatusItem> statusItem(double length) override;

 private:
  Log& log_;
  std::function<bool()> hasOldTray_;
};

}  // namespace kivra::qt
