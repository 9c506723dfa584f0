#pragma once

#include <utility>

#include "platform/alerts.h"
#include "platform/qt/foreground.h"

namespace kivra::qt {

/// Message boxes, above all windows until they are answered, and the beep of the desktop. Needs a
/// QApplication.
class QtAlerts : public Alerts {
 public:
  explicit QtAlerts(ActivateWindow activate = {}) : activate_(std::move(activate)) {}

  int runModal(const Alert& alert) override;
  void beep() override;

 private:
  ActivateWindow activate_;
};

}  // namespace kivra::qt
