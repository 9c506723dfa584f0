#pragma once

#include <cstdint>

namespace kivra::x11 {

/// Asks the window manager to bring a window to the front and give it the keyboard, as a pager does
/// for the user: a request of the program itself, whose windows were not used for long, is refused
/// by managers that keep programs from stealing the focus. Does nothing without a server.
void activateWindow(std::uint32_t window);

}  // namespace kivra::x11
