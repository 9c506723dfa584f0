#include "platform/x11/window_ping.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <span>
#include <vector>

#include "platform/x11/atoms.h"
#include "platform/x11/xcb_pointer.h"
#include "platform/x11/xcb_root.h"

namespace kivra::x11 {

namespace {

constexpr std::uint32_t mostProtocols = 64;

/// The first numbers of a window's property, of its 32-bit ones.
std::vector<std::uint32_t> numbers(xcb_connection_t* connection, xcb_window_t window,
                                   xcb_atom_t property) {
  const XcbPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
      connection, xcb_get_property(connection, 0, window, property, XCB_ATOM_ANY, 0, mostProtocols),
      nullptr));
  if (!reply || reply->format != 32) return {};
  const std::span bytes(static_cast<const char*>(xcb_get_property_value(reply.get())),
                        static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
  std::vector<std::uint32_t> read(bytes.size() / sizeof(std::uint32_t));
  if (!read.empty()) std::memcpy(read.data(), bytes.data(), bytes.size());
  return read;
}

/// Tells one question from the next, and from those of the window manager, which takes the server's
/// time.
std::uint32_t mark() {
  return static_cast<std::uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count());
}

}  // namespace

WindowPing::WindowPing() : isPending_(ask()) {}

bool WindowPing::ask() {
  int screen = 0;
  connection_.reset(xcb_connect(nullptr, &screen));
  if (xcb_connection_has_error(connection_.get()) != 0) return false;
  const auto root = rootWindow(connection_.get(), screen);
  Atoms atoms(connection_.get());
  const auto protocols = atoms.atom("WM_PROTOCOLS");
  const auto ping = atoms.atom("_NET_WM_PING");
  const auto active = numbers(connection_.get(), root, atoms.atom("_NET_ACTIVE_WINDOW"));
  if (active.empty() || active.front() == XCB_WINDOW_NONE) return false;
  const auto known = numbers(connection_.get(), active.front(), protocols);
  if (std::ranges::find(known, ping) == known.end()) return false;

  // The answer goes to the root window, as if its manager had asked.
  const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_.get(), root, XCB_CW_EVENT_MASK, &events);
  question_.response_type = XCB_CLIENT_MESSAGE;
  question_.format = 32;
  question_.window = active.front();
  question_.type = protocols;
  question_.data.data32[0] = ping;
  question_.data.data32[1] = mark();
  question_.data.data32[2] = active.front();
  xcb_send_event(connection_.get(), 0, active.front(), XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&question_));
  return xcb_flush(connection_.get()) > 0;
}

bool WindowPing::isPending() {
  while (isPending_) {
    const XcbPointer<xcb_generic_event_t> event(xcb_poll_for_event(connection_.get()));
    if (event) {
      isPending_ = !isAnswer(*event);
    } else {
      return isPending_ = xcb_connection_has_error(connection_.get()) == 0;
    }
  }
  return false;
}

bool WindowPing::isAnswer(const xcb_generic_event_t& event) const {
  constexpr std::uint8_t sentByClient = 0x80;
  if ((event.response_type & ~sentByClient) != XCB_CLIENT_MESSAGE) return false;
  const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
  return message.type == question_.type &&
         std::equal(message.data.data32, message.data.data32 + 3, question_.data.data32);
}

}  // namespace kivra::x11
