#pragma once

#include <utility>

#include "platform/qt/foreground.h"
#include "platform/windows.h"

namespace kivra::qt {

/// Windows of the desktop. Needs a QApplication.
class QtWindows : public Windows {
 public:
  explicit QtWindows(ActivateWindow activate = {}) : activate_(std::move(activate)) {}

  std::unique_ptr<Window> windowCreate(const WindowAttributes& attributes) override;

 private:
  ActivateWindow activate_;
};

}  // namespace kivra::qt
