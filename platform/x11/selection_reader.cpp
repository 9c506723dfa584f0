#include "platform/x11/selection_reader.h"

#include <algorithm>
#include <cstring>

#include "platform/x11/xcb_pointer.h"

namespace kivra::x11 {

namespace {

constexpr unsigned propertyCount = 32;
constexpr std::uint32_t everything = 0x1FFFFFFF;  // words

}  // namespace

SelectionReader::SelectionReader(xcb_connection_t* connection, Atoms& atoms, xcb_window_t window,
                                 xcb_atom_t selection)
    : connection_(connection), atoms_(atoms), window_(window), selection_(selection) {}

std::vector<std::string> SelectionReader::targets(const HandleEvents& handleEvents, Moment until) {
  const auto converted = convert("TARGETS", handleEvents, std::chrono::milliseconds(0), until);
  if (!converted || converted->format != 32) return {};
  std::vector<xcb_atom_t> atoms(converted->bytes.size() / sizeof(xcb_atom_t));
  std::memcpy(atoms.data(), converted->bytes.data(), atoms.size() * sizeof(xcb_atom_t));
  std::vector<std::string> names;
  names.reserve(atoms.size());
  for (const auto atom : atoms) names.push_back(atoms_.name(atom));
  return names;
}

std::optional<SelectionReader::Converted> SelectionReader::convert(const std::string& target,
                                                                   const HandleEvents& handleEvents,
                                                                   std::chrono::milliseconds wait,
                                                                   Moment until) {
  // A property of its own for each request: an answer that comes too late must not be taken for the
  // next one's.
  const auto number = std::to_string(requestCount_++ % propertyCount);
  request_ = {.target = atoms_.atom(target), .property = atoms_.atom("KIVRA_SELECTION_" + number)};
  xcb_delete_property(connection_, window_, request_.property);
  xcb_convert_selection(connection_, window_, selection_, request_.target, request_.property,
                        XCB_CURRENT_TIME);
  xcb_flush(connection_);
  const auto now = std::chrono::steady_clock::now();
  const auto deadline = wait.count() > 0 ? std::min(until, now + wait) : until;
  const auto isAnswered = handleEvents([this] { return request_.isAnswered; }, deadline);
  std::optional<Converted> converted;
  if (isAnswered && !request_.isRefused) {
    request_.hasPiece = false;
    converted = takeProperty();
    if (converted && converted->type == atoms_.atom("INCR")) {
      converted = takePieces(handleEvents, wait, until);
    }
  }
  request_ = {};
  return converted;
}

std::optional<SelectionReader::Converted> SelectionReader::takeProperty() {
  const XcbPointer<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection_,
                             xcb_get_property(connection_, 1, window_, request_.property,
                                              XCB_GET_PROPERTY_TYPE_ANY, 0, everything),
                             nullptr));
  if (!reply || reply->type == XCB_ATOM_NONE) return std::nullopt;
  return Converted{
      reply->type, reply->format,
      std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                  static_cast<std::size_t>(xcb_get_property_value_length(reply.get())))};
}

std::optional<SelectionReader::Converted> SelectionReader::takePieces(
    const HandleEvents& handleEvents, std::chrono::milliseconds wait, Moment until) {
  Converted whole;
  for (;;) {
    const auto deadline = std::min(until, std::chrono::steady_clock::now() + wait);
    if (!handleEvents([this] { return request_.hasPiece; }, deadline)) return std::nullopt;
    request_.hasPiece = false;
    auto piece = takeProperty();
    if (!piece) continue;
    if (piece->bytes.empty()) return whole;
    whole.type = piece->type;
    whole.format = piece->format;
    whole.bytes += piece->bytes;
  }
}

void SelectionReader::notified(const xcb_selection_notify_event_t& event) {
  const auto isExpected = event.selection == selection_ && event.target == request_.target &&
                          (event.property == request_.property || event.property == XCB_ATOM_NONE);
  if (isExpected) {
    request_.isAnswered = true;
    request_.isRefused = event.property == XCB_ATOM_NONE;
  } else if (event.property != XCB_ATOM_NONE) {
    xcb_delete_property(connection_, window_, event.property);
  }
}

void SelectionReader::propertyChanged(xcb_atom_t property) {
  if (property == request_.property) request_.hasPiece = true;
}

}  // namespace kivra::x11
