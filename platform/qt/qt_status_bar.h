#pragma once

#include "platform/log.h"
#include "platform/status_bar.h"

namespace kivra::qt {

/// The desktop's tray. While there is none the item waits for one. Needs a QApplication.
class QtStatusBar : public StatusBar {
 public:
  explicit QtStatusBar(Log& log) : log_(log) {}

  std::unique_ptr<StatusItem> statusItem(double length) override;

 private:
  Log& log_;
};

}  // namespace kivra::qt
