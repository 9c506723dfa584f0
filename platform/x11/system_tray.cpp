#include "platform/x11/system_tray.h"

#include <xcb/xcb.h>

#include <array>
#include <cstring>
#include <string>

#include "platform/x11/atoms.h"
#include "platform/x11/xcb_pointer.h"
#include "platform/x11/xcb_window.h"

namespace kivra::x11 {

namespace {

/// The first three of the numbers of 16 bits: what ordinary icons are drawn in.
std::optional<std::uint32_t> foreground(xcb_connection_t* connection, xcb_window_t tray,
                                        xcb_atom_t property) {
  const auto bytes = windowProperty(connection, tray, property);
  std::array<std::uint32_t, 3> parts{};
  if (!bytes || bytes->size() < sizeof parts) return std::nullopt;
  std::memcpy(parts.data(), bytes->data(), sizeof parts);
  constexpr auto highByte = [](std::uint32_t part) { return part >> 8U & 0xFFU; };
  return highByte(parts[0]) << 16U | highByte(parts[1]) << 8U | highByte(parts[2]);
}

}  // namespace

std::optional<SystemTray> systemTray() {
  int screen = 0;
  const XcbConnectionPointer connection(xcb_connect(nullptr, &screen));
  if (xcb_connection_has_error(connection.get()) != 0) return std::nullopt;
  Atoms atoms(connection.get());
  const auto selection = atoms.atom("_NET_SYSTEM_TRAY_S" + std::to_string(screen));
  const XcbPointer<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
      connection.get(), xcb_get_selection_owner(connection.get(), selection), nullptr));
  if (!reply || reply->owner == XCB_NONE) return std::nullopt;
  return SystemTray{
      foreground(connection.get(), reply->owner, atoms.atom("_NET_SYSTEM_TRAY_COLORS"))};
}

}  // namespace kivra::x11
