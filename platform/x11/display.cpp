#include "platform/x11/display.h"

#include <xcb/xcb.h>

#include "platform/x11/xcb_pointer.h"

namespace kivra::x11 {

bool isDisplayThere() {
  const XcbConnectionPointer connection(xcb_connect(nullptr, nullptr));
  return xcb_connection_has_error(connection.get()) == 0;
}

}  // namespace kivra::x11
