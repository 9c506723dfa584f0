#pragma once

#include "platform/windows.h"

namespace kivra::qt {

/// Windows of the desktop. Needs a QApplication.
class QtWindows : public Windows {
 public:
  std::unique_ptr<Window> windowCreate(const WindowAttributes& attributes) override;
};

}  // namespace kivra::qt
