#include "platform/x11/clipboard_selection.h"

#include <poll.h>
#include <xcb/xfixes.h>

#include <utility>

#include "platform/selection/selection_contents.h"

namespace kivra::x11 {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto serverWait = std::chrono::seconds(1);
constexpr auto managerWait = std::chrono::seconds(1);
constexpr std::uint8_t sentByClient = 0x80;
constexpr xcb_window_t nobody = XCB_WINDOW_NONE;
constexpr const char* stampProperty = "KIVRA_TIME";
constexpr const char* handOverProperty = "KIVRA_SAVE_TARGETS";

}  // namespace

ClipboardSelection::ClipboardSelection(const std::string& display, const SelectionWaits& waits)
    : Selection(waits),
      connection_(xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr)),
      atoms_(connection_.get()),
      offer_(connection_.get(), atoms_) {
  if (!isConnected()) return;
  const auto* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
  window_ = xcb_generate_id(connection_.get());
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, screen->root, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
  clipboard_ = atoms_.atom("CLIPBOARD");
  reader_.emplace(
      connection_.get(), atoms_, window_, clipboard_, waits.idle,
      [this](const auto& isAnswered, auto until) { return awaitAnswer(isAnswered, until); });
  watchOwner();
}

ClipboardSelection::~ClipboardSelection() {
  if (isConnected() && !offer_.contents().empty() && owner() == Owner::us) handOver();
}

bool ClipboardSelection::isConnected() const {
  return xcb_connection_has_error(connection_.get()) == 0;
}

void ClipboardSelection::watchOwner() {
  auto* const connection = connection_.get();
  const auto* const extension = xcb_get_extension_data(connection, &xcb_xfixes_id);
  if (extension == nullptr || extension->present == 0) return;
  const XcbPointer<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
      connection, xcb_xfixes_query_version(connection, 1, 0), nullptr));
  xcb_xfixes_select_selection_input(connection, window_, clipboard_,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  ownerChanged_ = static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
  xcb_flush(connection);
}

int ClipboardSelection::fd() const {
  return isConnected() ? xcb_get_file_descriptor(connection_.get()) : -1;
}

void ClipboardSelection::handleEvents() {
  while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
    handle(*event);
  }
  xcb_flush(connection_.get());
}

void ClipboardSelection::handle(const xcb_generic_event_t& event) {
  const auto type = static_cast<std::uint8_t>(event.response_type & ~sentByClient);
  const auto* const any = static_cast<const void*>(&event);
  if (ownerChanged_ != 0 && type == ownerChanged_) {
    noteNewOwner();
  } else if (type == XCB_SELECTION_REQUEST) {
    const auto& request = *static_cast<const xcb_selection_request_event_t*>(any);
    if (request.selection == clipboard_) offer_.answer(request);
  } else if (type == XCB_SELECTION_CLEAR) {
    offer_.lose(static_cast<const xcb_selection_clear_event_t*>(any)->time);
  } else if (type == XCB_SELECTION_NOTIFY) {
    const auto& notify = *static_cast<const xcb_selection_notify_event_t*>(any);
    if (notify.selection == clipboard_) {
      reader_->notified(notify);
    } else {
      isHandedOver_ = true;
    }
  } else if (type == XCB_PROPERTY_NOTIFY) {
    handleProperty(*static_cast<const xcb_property_notify_event_t*>(any));
  }
}

void ClipboardSelection::handleProperty(const xcb_property_notify_event_t& event) {
  const auto isDeleted = event.state == XCB_PROPERTY_DELETE;
  if (event.window != window_) {
    if (isDeleted) offer_.propertyDeleted(event.window, event.atom);
  } else if (!isDeleted) {
    if (event.atom == atoms_.atom(stampProperty)) stamp_ = event.time;
    reader_->propertyChanged(event.atom);
  }
}

bool ClipboardSelection::handleEventsUntil(const std::function<bool()>& condition,
                                           SelectionReader::Moment until) {
  for (;;) {
    handleEvents();
    if (condition()) return true;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
    if (left.count() <= 0 || !isConnected()) return false;
    pollfd descriptor{.fd = fd(), .events = POLLIN, .revents = 0};
    ::poll(&descriptor, 1, static_cast<int>(left.count()));
  }
}

void ClipboardSelection::catchUp() {
  // The answer comes behind the notices of what happened before the question.
  ownerOf(clipboard_);
  handleEvents();
}

Selection::Owner ClipboardSelection::owner() {
  const auto window = ownerOf(clipboard_);
  return window == nobody ? Owner::nobody : window == window_ ? Owner::us : Owner::another;
}

bool ClipboardSelection::awaitAnswer(const std::function<bool()>& isAnswered,
                                     SelectionReader::Moment until) {
  handleEventsUntil([&] { return isAnswered() || isAskedInVain(); }, until);
  return isAnswered();
}

void ClipboardSelection::own(const std::vector<PasteboardItem>& items) {
  if (!isConnected()) return;
  auto contents = contentsOf(items);
  const auto owner = contents.empty() ? nobody : window_;
  const auto time = serverTime();
  offer_.set(std::move(contents), time);
  xcb_set_selection_owner(connection_.get(), owner, clipboard_, time);
  ownerOf(clipboard_);
  handleEvents();
}

xcb_timestamp_t ClipboardSelection::serverTime() {
  stamp_.reset();
  xcb_change_property(connection_.get(), XCB_PROP_MODE_APPEND, window_, atoms_.atom(stampProperty),
                      XCB_ATOM_STRING, 8, 0, nullptr);
  handleEventsUntil([this] { return stamp_.has_value(); }, Clock::now() + serverWait);
  return stamp_.value_or(XCB_CURRENT_TIME);
}

xcb_window_t ClipboardSelection::ownerOf(xcb_atom_t selection) {
  const XcbPointer<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
      connection_.get(), xcb_get_selection_owner(connection_.get(), selection), nullptr));
  return reply ? reply->owner : nobody;
}

void ClipboardSelection::handOver() {
  const auto manager = atoms_.atom("CLIPBOARD_MANAGER");
  if (ownerOf(manager) == nobody) return;
  xcb_convert_selection(connection_.get(), window_, manager, atoms_.atom("SAVE_TARGETS"),
                        atoms_.atom(handOverProperty), XCB_CURRENT_TIME);
  handleEventsUntil([this] { return isHandedOver_ && !offer_.isHandingOver(); },
                    Clock::now() + managerWait);
}

}  // namespace kivra::x11
