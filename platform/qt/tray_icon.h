#pragma once

#include <QColor>
#include <QIcon>
#include <optional>
#include <string>

namespace kivra::qt {

/// How a tray shows icons.
struct TrayLook {
  bool drawsNames = false;  ///< it may draw an installed symbolic icon in its own colours
  std::optional<QColor> foreground{};  ///< of its texts, as far as it tells
};

/// The program's icon for a tray: in the tray's colours where they can be had, else in colours that
/// stand out on light and dark grounds. Struck through while the program is off.
QIcon trayIcon(const std::string& symbol, bool isOff, const TrayLook& look);

}  // namespace kivra::qt
