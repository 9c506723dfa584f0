#include "platform/x11/x11_selection_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/x11/xcb_pointer.h"

namespace kivra::x11 {

namespace {

constexpr unsigned propertyCount = 32;
constexpr std::uint8_t bytesFormat = 8;
constexpr std::uint8_t wordsFormat = 32;

}  // namespace

X11SelectionReader::X11SelectionReader(xcb_connection_t* connection, Atoms& atoms,
                                       xcb_window_t window, xcb_atom_t selection,
                                       std::chrono::milliseconds idle, HandleEvents handleEvents)
    : connection_(connection),
      atoms_(atoms),
      window_(window),
      selection_(selection),
      idle_(idle),
      handleEvents_(std::move(handleEvents)) {}

std::optional<std::vector<std::string>> X11SelectionReader::targets(Moment until) {
  const auto converted = convert("TARGETS", until);
  if (!converted) return std::nullopt;
  std::vector<std::string> names;
  if (converted->format != wordsFormat) return names;
  std::vector<xcb_atom_t> atoms(converted->bytes.size() / sizeof(xcb_atom_t));
  std::memcpy(atoms.data(), converted->bytes.data(), atoms.size() * sizeof(xcb_atom_t));
  names.reserve(atoms.size());
  for (const auto atom : atoms) names.push_back(atoms_.name(atom));
  return names;
}

std::optional<SelectionReader::Given> X11SelectionReader::read(const std::string& target,
                                                               Moment until) {
  auto converted = convert(target, until);
  if (!converted) return std::nullopt;
  if (converted->format != bytesFormat) return Given{};
  return Given{std::move(converted->bytes)};
}

std::optional<X11SelectionReader::Converted> X11SelectionReader::convert(const std::string& target,
                                                                         Moment until) {
  // A property of its own for each request: an answer that comes too late must not be taken for the
  // next one's.
  const auto number = std::to_string(requestCount_++ % propertyCount);
  request_ = {.target = atoms_.atom(target), .property = atoms_.atom("KIVRA_SELECTION_" + number)};
  xcb_delete_property(connection_, window_, request_.property);
  xcb_convert_selection(connection_, window_, selection_, request_.target, request_.property,
                        XCB_CURRENT_TIME);
  xcb_flush(connection_);
  std::optional<Converted> converted;
  if (waitFor(request_.isAnswered, until)) {
    request_.hasPiece = false;
    converted = request_.isRefused ? Converted{} : takeProperty();
    if (converted && converted->type == atoms_.atom("INCR")) converted = takePieces(until);
  }
  request_ = {};
  return converted;
}

bool X11SelectionReader::waitFor(const bool& sign, Moment until) {
  const auto deadline = std::min(until, std::chrono::steady_clock::now() + idle_);
  return handleEvents_([&sign] { return sign; }, deadline);
}

std::optional<X11SelectionReader::Converted> X11SelectionReader::takeProperty() {
  constexpr auto words = static_cast<std::uint32_t>(mostBytes / 4);
  const XcbPointer<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection_,
                             xcb_get_property(connection_, 1, window_, request_.property,
                                              XCB_GET_PROPERTY_TYPE_ANY, 0, words),
                             nullptr));
  if (!reply || reply->bytes_after > 0) return std::nullopt;
  return Converted{
      reply->type, reply->format,
      std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                  static_cast<std::size_t>(xcb_get_property_value_length(reply.get())))};
}

std::optional<X11SelectionReader::Converted> X11SelectionReader::takePieces(Moment until) {
  Converted whole;
  while (waitFor(request_.hasPiece, until)) {
    request_.hasPiece = false;
    const auto piece = takeProperty();
    if (!piece || whole.bytes.size() + piece->bytes.size() > mostBytes) break;
    if (piece->type == XCB_ATOM_NONE) continue;
    whole.type = piece->type;
    whole.format = piece->format;
    if (piece->bytes.empty()) return whole;
    whole.bytes += piece->bytes;
  }
  return std::nullopt;
}

void X11SelectionReader::notified(const xcb_selection_notify_event_t& event) {
  const auto isExpected = event.selection == selection_ && event.target == request_.target &&
                          (event.property == request_.property || event.property == XCB_ATOM_NONE);
  if (isExpected) {
    request_.isAnswered = true;
    request_.isRefused = event.property == XCB_ATOM_NONE;
  } else if (event.property != XCB_ATOM_NONE) {
    xcb_delete_property(connection_, window_, event.property);
  }
}

void X11SelectionReader::propertyChanged(xcb_atom_t property) {
  if (property == request_.property) request_.hasPiece = true;
}

}  // namespace kivra::x11
