#pragma once

namespace kivra::x11 {

/// Whether a tray of the old kind (XEmbed) runs on the display; false where there is no display.
bool hasSystemTray();

}  // namespace kivra::x11
