#include "platform/x11/system_tray.h"

#include <xcb/xcb.h>

#include <string>

#include "platform/x11/atoms.h"
#include "platform/x11/xcb_pointer.h"

namespace kivra::x11 {

bool hasSystemTray() {
  int screen = 0;
  const XcbConnectionPointer connection(xcb_connect(nullptr, &screen));
  if (xcb_connection_has_error(connection.get()) != 0) return false;
  const auto selection =
      Atoms(connection.get()).atom("_NET_SYSTEM_TRAY_S" + std::to_string(screen));
  const XcbPointer<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
      connection.get(), xcb_get_selection_owner(connection.get(), selection), nullptr));
  return reply && reply->owner != XCB_NONE;
}

}  // namespace kivra::x11
