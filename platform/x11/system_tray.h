#pragma once

#include <cstdint>
#include <optional>

namespace kivra::x11 {

/// A tray of the old kind (XEmbed).
struct SystemTray {
  std::optional<std::uint32_t> foreground;  ///< the colour of its icons, 0xRRGGBB, where it tells
};

/// The one that runs on the display; nothing where there is none, and without a display.
std::optional<SystemTray> systemTray();

}  // namespace kivra::x11
