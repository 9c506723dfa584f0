#pragma once

#include <optional>

#include "platform/qt/qt_status_bar.h"
#include "platform/x11/system_tray.h"

namespace kivra {

/// The display's tray of the old kind, for the status bar.
inline std::optional<qt::OldTray> oldTray() {
  const auto tray = x11::systemTray();
  return tray ? std::optional(qt::OldTray{tray->foreground}) : std::nullopt;
}

}  // namespace kivra
