#pragma once

#include <optional>

#include "platform/status_bar.h"

namespace kivra::x11 {

/// The tray of the old kind that runs on the display; nothing where there is none, and without a
/// display.
std::optional<SystemTray> systemTray();

}  // namespace kivra::x11
