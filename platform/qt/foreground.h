#pragma once

#include <QWidget>
#include <cstdint>
#include <functional>

namespace kivra::qt {

/// Asks the desktop to bring the window of this number to the front, whatever program is there.
using ActivateWindow = std::function<void(std::uint32_t window)>;

/// Shows the window in front of all others and gives it the keyboard. `activate` may be empty; it
/// is called once the window is on the screen, for a window manager knows of no other.
void bringToFront(QWidget& window, const ActivateWindow& activate);

}  // namespace kivra::qt
