#include "platform/x11/xcb_window.h"

#include <cstddef>
#include <cstdint>

#include "platform/x11/xcb_pointer.h"

namespace kivra::x11 {

namespace {

// In 32-bit units.
constexpr std::uint32_t longestProperty = 1024;

}  // namespace

xcb_window_t rootWindow(xcb_connection_t* connection, int screen) {
  auto roots = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; screen > 0 && roots.rem > 1; --screen) xcb_screen_next(&roots);
  return roots.data->root;
}

std::optional<std::string> windowProperty(xcb_connection_t* connection, xcb_window_t window,
                                          xcb_atom_t property) {
  const auto cookie =
      xcb_get_property(connection, 0, window, property, XCB_ATOM_ANY, 0, longestProperty);
  const XcbPointer<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection, cookie, nullptr));
  if (!reply || reply->type == XCB_ATOM_NONE) return std::nullopt;
  const auto length = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
  return std::string(static_cast<const char*>(xcb_get_property_value(reply.get())), length);
}

}  // namespace kivra::x11
