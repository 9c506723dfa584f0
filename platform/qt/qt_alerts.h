#pragma once

#include "platform/alerts.h"

namespace kivra::qt {

/// Message boxes and the beep of the desktop. Needs a QApplication.
class QtAlerts : public Alerts {
 public:
  int runModal(const Alert& alert) override;
  void beep() override;
};

}  // namespace kivra::qt
