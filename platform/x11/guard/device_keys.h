#pragma once

#include <X11/Xlib.h>

#include <bitset>

namespace kivra::x11 {

/// X key codes.
using KeyCodes = std::bitset<256>;

/// The keys that are down on a device of its own, as the server sees it; empty for one that is
/// gone.
KeyCodes keysDown(Display* display, int device);

}  // namespace kivra::x11
