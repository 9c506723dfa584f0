#include "platform/x11/selection_offer.h"

#include <algorithm>
#include <utility>

#include "platform/x11/xcb_pointer.h"

namespace kivra::x11 {

namespace {

constexpr std::size_t pieceSize = 256U << 10U;
constexpr auto abandonedAfter = std::chrono::seconds(10);
constexpr std::uint8_t bytes = 8;
constexpr std::uint8_t words = 32;
constexpr std::uint32_t atMost = 1U << 16U;  // of pairs in MULTIPLE, in words

}  // namespace

void SelectionOffer::set(SelectionContents contents, xcb_timestamp_t since) {
  contents_ = std::move(contents);
  since_ = since;
}

void SelectionOffer::lose(xcb_timestamp_t at) {
  // The server's clock starts again from 0 after 49 days.
  if (static_cast<std::int32_t>(at - since_) >= 0) contents_.clear();
}

void SelectionOffer::answer(const xcb_selection_request_event_t& request) {
  // Clients from before the ICCCM name no property.
  const auto property = request.property == XCB_ATOM_NONE ? request.target : request.property;
  const auto isMany = request.target == atoms_.atom("MULTIPLE");
  const auto isDone =
      isMany ? request.property != XCB_ATOM_NONE && putMany(request.requestor, property)
             : put(request.requestor, request.target, property);
  xcb_selection_notify_event_t event{};
  event.response_type = XCB_SELECTION_NOTIFY;
  event.time = request.time;
  event.requestor = request.requestor;
  event.selection = request.selection;
  event.target = request.target;
  if (isDone) event.property = property;  // else none
  xcb_send_event(connection_, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&event));
}

bool SelectionOffer::put(xcb_window_t window, xcb_atom_t target, xcb_atom_t property) {
  if (target == atoms_.atom("TARGETS")) {
    putTargets(window, property);
    return true;
  }
  if (target == atoms_.atom("TIMESTAMP")) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_INTEGER,
                        words, 1, &since_);
    return true;
  }
  const auto name = atoms_.name(target);
  const auto found = contents_.find(name);
  if (found == contents_.end()) return false;
  putData(window, property,
          name == target_names::anyText ? atoms_.atom(target_names::utf8) : target, found->second);
  return true;
}

bool SelectionOffer::putMany(xcb_window_t window, xcb_atom_t property) {
  const XcbPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
      connection_,
      xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, atMost),
      nullptr));
  if (!reply || reply->format != words) return false;
  const auto* const atoms = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
  std::vector<xcb_atom_t> pairs(atoms, atoms + reply->value_len);
  for (std::size_t at = 0; at + 1 < pairs.size(); at += 2) {
    if (!put(window, pairs[at], pairs[at + 1])) pairs[at + 1] = XCB_ATOM_NONE;
  }
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property,
                      atoms_.atom("ATOM_PAIR"), words, static_cast<std::uint32_t>(pairs.size()),
                      pairs.data());
  return true;
}

void SelectionOffer::putTargets(xcb_window_t window, xcb_atom_t property) {
  std::vector<xcb_atom_t> targets = {atoms_.atom("TARGETS"), atoms_.atom("TIMESTAMP"),
                                     atoms_.atom("MULTIPLE")};
  for (const auto& [name, data] : contents_) targets.push_back(atoms_.atom(name));
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_ATOM, words,
                      static_cast<std::uint32_t>(targets.size()), targets.data());
}

void SelectionOffer::putData(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                             std::shared_ptr<const std::string> data) {
  if (data->size() <= pieceSize) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type, bytes,
                        static_cast<std::uint32_t>(data->size()), data->data());
    return;
  }
  forgetAbandoned();
  listenTo(window, true);
  const auto size = static_cast<std::uint32_t>(data->size());
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, atoms_.atom("INCR"),
                      words, 1, &size);
  transfers_.push_back({.window = window,
                        .property = property,
                        .type = type,
                        .data = std::move(data),
                        .lastStep = std::chrono::steady_clock::now()});
}

void SelectionOffer::propertyDeleted(xcb_window_t window, xcb_atom_t property) {
  const auto found =
      std::find_if(transfers_.begin(), transfers_.end(), [&](const Transfer& transfer) {
        return transfer.window == window && transfer.property == property;
      });
  if (found == transfers_.end()) return;
  const auto isLast = found->sent == found->data->size();  // the empty piece ends it
  putPiece(*found);
  if (!isLast) return;
  transfers_.erase(found);
  listenTo(window, false);
}

void SelectionOffer::putPiece(Transfer& transfer) {
  const auto size = std::min(pieceSize, transfer.data->size() - transfer.sent);
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, transfer.window, transfer.property,
                      transfer.type, bytes, static_cast<std::uint32_t>(size),
                      transfer.data->data() + transfer.sent);
  transfer.sent += size;
  transfer.lastStep = std::chrono::steady_clock::now();
}

void SelectionOffer::listenTo(xcb_window_t window, bool listen) {
  const auto isBusy = std::any_of(transfers_.begin(), transfers_.end(),
                                  [&](const Transfer& other) { return other.window == window; });
  if (isBusy) return;
  const std::uint32_t mask = listen ? XCB_EVENT_MASK_PROPERTY_CHANGE : XCB_EVENT_MASK_NO_EVENT;
  xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &mask);
}

void SelectionOffer::forgetAbandoned() {
  const auto now = std::chrono::steady_clock::now();
  std::erase_if(transfers_,
                [&](const Transfer& transfer) { return now - transfer.lastStep > abandonedAfter; });
}

}  // namespace kivra::x11
