#include "platform/x11/window_activation.h"

#include <xcb/xcb.h>

#include "platform/x11/atoms.h"
#include "platform/x11/xcb_pointer.h"
#include "platform/x11/xcb_window.h"

namespace kivra::x11 {

namespace {

constexpr std::uint32_t pager = 2;

/// The server's clock; it is told with any change of a property.
xcb_timestamp_t serverTime(xcb_connection_t* connection, xcb_window_t root) {
  const auto window = xcb_generate_id(connection);
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
  xcb_change_property(connection, XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                      8, 0, nullptr);
  xcb_flush(connection);
  while (const XcbPointer<xcb_generic_event_t> event{xcb_wait_for_event(connection)}) {
    if (event->response_type != XCB_PROPERTY_NOTIFY) continue;
    const void* const any = event.get();
    return static_cast<const xcb_property_notify_event_t*>(any)->time;
  }
  return XCB_CURRENT_TIME;
}

}  // namespace

void activateWindow(std::uint32_t window) {
  int screen = 0;
  const XcbConnectionPointer connection(xcb_connect(nullptr, &screen));
  if (xcb_connection_has_error(connection.get()) != 0) return;
  const auto root = rootWindow(connection.get(), screen);
  xcb_client_message_event_t request{};
  request.response_type = XCB_CLIENT_MESSAGE;
  request.format = 32;
  request.window = window;
  request.type = Atoms(connection.get()).atom("_NET_ACTIVE_WINDOW");
  request.data.data32[0] = pager;
  request.data.data32[1] = serverTime(connection.get(), root);
  xcb_send_event(connection.get(), 0, root,
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&request));
  // A server that reads the end of the connection first drops what came before it.
  const XcbPointer<xcb_get_input_focus_reply_t> read(
      xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
}

}  // namespace kivra::x11
