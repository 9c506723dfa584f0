#pragma once

#include <xcb/xcb.h>

namespace kivra::x11 {

/// The root window of a screen, by the number that xcb_connect gives.
inline xcb_window_t rootWindow(xcb_connection_t* connection, int screen) {
  auto roots = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; screen > 0 && roots.rem > 1; --screen) xcb_screen_next(&roots);
  return roots.data->root;
}

}  // namespace kivra::x11
