#include "platform/x11/window_ping.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "platform/x11/atoms.h"
#include "platform/x11/xcb_window.h"

namespace kivra::x11 {

namespace {

/// The numbers in a window's property.
std::vector<std::uint32_t> numbers(xcb_connection_t* connection, xcb_window_t window,
                                   xcb_atom_t property) {
  const auto bytes = windowProperty(connection, window, property).value_or("");
  std::vector<std::uint32_t> read(bytes.size() / sizeof(std::uint32_t));
  if (!read.empty()) std::memcpy(read.data(), bytes.data(), read.size() * sizeof(std::uint32_t));
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

  question_.response_type = XCB_CLIENT_MESSAGE;
  question_.format = 32;
  question_.window = active.front();
  question_.type = protocols;
  question_.data.data32[0] = ping;
  question_.data.data32[1] = mark();
  question_.data.data32[2] = active.front();
  send(root);
  return true;
}

void WindowPing::send(xcb_window_t root) {
  // The answer goes to the root window, as if its manager had asked.
  const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_.get(), root, XCB_CW_EVENT_MASK, &events);
  xcb_send_event(connection_.get(), 0, question_.window, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&question_));
  xcb_flush(connection_.get());
}

bool WindowPing::isPending() {
  while (isPending_) {
    const XcbPointer<xcb_generic_event_t> event(xcb_poll_for_event(connection_.get()));
    if (!event) break;
    isPending_ = !isAnswer(*event);
  }
  isPending_ = isPending_ && xcb_connection_has_error(connection_.get()) == 0;
  return isPending_;
}

bool WindowPing::isAnswer(const xcb_generic_event_t& event) const {
  constexpr std::uint8_t sentByClient = 0x80;
  if ((event.response_type & ~sentByClient) != XCB_CLIENT_MESSAGE) return false;
  const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
  return message.type == question_.type &&
         std::equal(message.data.data32, message.data.data32 + 3, question_.data.data32);
}

}  // namespace kivra::x11
