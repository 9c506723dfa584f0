#pragma once

#include <xcb/xcb.h>

#include <optional>
#include <string>

namespace kivra::x11 {

/// The root window of a screen, by the number that xcb_connect gives.
xcb_window_t rootWindow(xcb_connection_t* connection, int screen);

/// The bytes of a window's property, at most 4 KiB; nothing when the window has no such property.
std::optional<std::string> windowProperty(xcb_connection_t* connection, xcb_window_t window,
                                          xcb_atom_t property);

}  // namespace kivra::x11
