#include "selection_owner.h"

#include <poll.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace kivra::x11 {

namespace {

constexpr std::size_t pieceSize = 200'000;
constexpr std::uint8_t sentByClient = 0x80;

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

}  // namespace

SelectionOwner::SelectionOwner(const std::string& display, Answers answers)
    : answers_(std::move(answers)), connection_(xcb_connect(display.c_str(), nullptr)) {
  own();
  thread_ = std::thread([this] { serve(); });
}

SelectionOwner::~SelectionOwner() {
  isEnding_ = true;
  thread_.join();
  if (connection_ != nullptr) xcb_disconnect(connection_);
}

std::set<std::string> SelectionOwner::asked() const {
  const std::lock_guard lock(mutex_);
  return asked_;
}

xcb_atom_t SelectionOwner::atom(const std::string& name) {
  const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
      connection_,
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
      nullptr));
  return reply->atom;
}

std::string SelectionOwner::name(xcb_atom_t atom) {
  const Reply<xcb_get_atom_name_reply_t> reply(
      xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, atom), nullptr));
  return {xcb_get_atom_name_name(reply.get()),
          static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

void SelectionOwner::own() {
  window_ = xcb_generate_id(connection_);
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_,
                    xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  xcb_set_selection_owner(connection_, window_, atom("CLIPBOARD"), XCB_CURRENT_TIME);
  atom("TARGETS");  // the answer comes when the clipboard is owned
}

void SelectionOwner::serve() {
  while (!isEnding_ && connection_ != nullptr) {
    pollfd descriptor{.fd = xcb_get_file_descriptor(connection_), .events = POLLIN, .revents = 0};
    ::poll(&descriptor, 1, 10);
    while (connection_ != nullptr) {
      const Reply<xcb_generic_event_t> event(xcb_poll_for_event(connection_));
      if (!event) break;
      const auto type = event->response_type & ~sentByClient;
      const auto* const any = static_cast<const void*>(event.get());
      if (type == XCB_SELECTION_REQUEST) {
        answer(*static_cast<const xcb_selection_request_event_t*>(any));
      } else if (type == XCB_SELECTION_CLEAR) {
        isLost_ = true;
      } else if (type == XCB_PROPERTY_NOTIFY &&
                 static_cast<const xcb_property_notify_event_t*>(any)->state ==
                     XCB_PROPERTY_DELETE) {
        if (!sendPiece()) connection_ = (xcb_disconnect(connection_), nullptr);
      }
    }
    if (connection_ != nullptr) xcb_flush(connection_);
  }
}

void SelectionOwner::answer(const xcb_selection_request_event_t& request) {
  const auto target = name(request.target);
  {
    const std::lock_guard lock(mutex_);
    asked_.insert(target);
  }
  const auto found = answers_.find(target);
  if (found != answers_.end()) {
    if (found->second.way == Way::silent) return;
    std::this_thread::sleep_for(found->second.delay);
  }
  xcb_selection_notify_event_t event{};
  event.response_type = XCB_SELECTION_NOTIFY;
  event.time = request.time;
  event.requestor = request.requestor;
  event.selection = request.selection;
  event.target = request.target;
  if (put(request)) event.property = request.property;
  xcb_send_event(connection_, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&event));
}

bool SelectionOwner::put(const xcb_selection_request_event_t& request) {
  const auto target = name(request.target);
  if (target == "TARGETS") {
    putTargets(request);
    return true;
  }
  const auto found = answers_.find(target);
  if (found == answers_.end()) return false;
  const auto& [bytes, way, delay] = found->second;
  if (way == Way::whole) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                        request.target, 8, static_cast<std::uint32_t>(bytes.size()), bytes.data());
    return true;
  }
  transfer_ = {request.requestor, request.property, request.target, found->second, 0};
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_, request.requestor, XCB_CW_EVENT_MASK, &mask);
  const auto size = static_cast<std::uint32_t>(bytes.size());
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                      atom("INCR"), 32, 1, &size);
  return true;
}

void SelectionOwner::putTargets(const xcb_selection_request_event_t& request) {
  std::vector<xcb_atom_t> targets;
  for (const auto& [target, answer] : answers_) targets.push_back(atom(target));
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                      XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(targets.size()),
                      targets.data());
}

/// False: it dies.
bool SelectionOwner::sendPiece() {
  auto& [window, property, type, answer, sent] = transfer_;
  if (window == XCB_WINDOW_NONE) return true;
  if (answer.way == Way::diesHalfWay && sent > 0) return false;
  if (answer.way == Way::withoutEnd) sent = 0;
  const auto size = std::min(pieceSize, answer.bytes.size() - sent);
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                      static_cast<std::uint32_t>(size), answer.bytes.data() + sent);
  sent += size;
  if (size == 0) transfer_ = {};
  return true;
}

}  // namespace kivra::x11
