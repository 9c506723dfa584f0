#include "platform/x11/x11_connection.h"

#include <xcb/xinput.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "platform/x11/xcb_pointer.h"
#include "platform/x11/xcb_window.h"
#include "platform/x11/xcb_xkb.h"

namespace kivra::x11 {

namespace {

constexpr auto waylandProblem =
    "в сеансе Wayland окна не показывают нажатий другим программам; войдите в сеанс X11 (Xorg)";

bool hasExtension(xcb_connection_t* connection, std::string_view name) {
  const XcbPointer<xcb_query_extension_reply_t> reply(xcb_query_extension_reply(
      connection,
      xcb_query_extension(connection, static_cast<std::uint16_t>(name.size()), name.data()),
      nullptr));
  return reply && reply->present != 0;
}

bool hasXInput(xcb_connection_t* connection) {
  if (!hasExtension(connection, "XInputExtension")) return false;
  const XcbPointer<xcb_input_xi_query_version_reply_t> reply(xcb_input_xi_query_version_reply(
      connection, xcb_input_xi_query_version(connection, 2, 2), nullptr));
  return reply &&
         (reply->major_version > 2 || (reply->major_version == 2 && reply->minor_version >= 2));
}

/// Such a server shows the windows of X programs in a Wayland session, and sees the keys of no
/// others. Its devices have told of it for longer than its extension has.
bool isXwayland(xcb_connection_t* connection) {
  constexpr std::string_view devices = "xwayland-";
  if (hasExtension(connection, "XWAYLAND")) return true;
  if (!hasXInput(connection)) return false;
  const XcbPointer<xcb_input_xi_query_device_reply_t> reply(xcb_input_xi_query_device_reply(
      connection, xcb_input_xi_query_device(connection, XCB_INPUT_DEVICE_ALL), nullptr));
  if (!reply) return false;
  auto info = xcb_input_xi_query_device_infos_iterator(reply.get());
  for (; info.rem > 0; xcb_input_xi_device_info_next(&info)) {
    const std::string_view name(xcb_input_xi_device_info_name(info.data), info.data->name_len);
    if (name.starts_with(devices)) return true;
  }
  return false;
}

void selectEvents(xcb_connection_t* connection) {
  constexpr auto events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
  constexpr auto parts = static_cast<std::uint16_t>(
      XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP);
  xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, parts, parts,
                        nullptr);
  xcb_flush(connection);
}

}  // namespace

X11Connection::~X11Connection() {
  if (connection_ != nullptr) xcb_disconnect(connection_);
}

bool X11Connection::connect() {
  if (isConnected()) return true;
  if (connection_ != nullptr) xcb_disconnect(connection_);
  atoms_.clear();
  int screen = 0;
  connection_ = xcb_connect(nullptr, &screen);
  if (xcb_connection_has_error(connection_) != 0) {
    xcb_disconnect(connection_);
    connection_ = nullptr;
    problem_ =
        std::getenv("WAYLAND_DISPLAY") != nullptr ? waylandProblem : "нет X-сервера (DISPLAY)";
    return false;
  }
  root_ = rootWindow(connection_, screen);
  if (isXwayland(connection_)) {
    problem_ = waylandProblem;
    return false;
  }
  const auto lacking = missing();
  problem_ =
      lacking.empty() ? "" : "X-сервер не умеет: " + lacking + "; войдите в сеанс обычного Xorg";
  if (problem_.empty()) selectEvents(connection_);
  return problem_.empty();
}

std::string X11Connection::missing() {
  std::string names;
  const auto check = [&names](bool present, const char* name) {
    if (!present) names += (names.empty() ? "" : ", ") + std::string(name);
  };
  check(hasXInput(connection_), "XInput 2.2");
  check(hasExtension(connection_, "XKEYBOARD") &&
            xkb_x11_setup_xkb_extension(connection_, 1, 0, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS,
                                        nullptr, nullptr, &xkbEvent_, nullptr) == 1,
        "XKB");
  check(hasExtension(connection_, "XTEST"), "XTEST");
  return names;
}

std::string X11Connection::impediment() const {
  return problem_ == waylandProblem ? "сеанс Wayland: войдите в сеанс X11 (Xorg)" : problem_;
}

std::string X11Connection::serverName() const {
  if (connection_ == nullptr) return {};
  const auto* const setup = xcb_get_setup(connection_);
  return std::string(xcb_setup_vendor(setup),
                     static_cast<std::size_t>(xcb_setup_vendor_length(setup))) +
         " " + std::to_string(setup->release_number);
}

bool X11Connection::isLost() const {
  return connection_ != nullptr && xcb_connection_has_error(connection_) != 0;
}

void X11Connection::readEvents() {
  if (connection_ == nullptr) return;
  while (const auto event = XcbPointer<xcb_generic_event_t>(xcb_poll_for_event(connection_))) {
    const auto type = event->response_type & 0x7F;
    if (type == XCB_PROPERTY_NOTIFY) {
      if (!propertyChanged_) continue;
      propertyChanged_(reinterpret_cast<xcb_property_notify_event_t&>(*event).atom);
    } else if (type == XCB_MAPPING_NOTIFY || type == xkbEvent_) {
      if (mapChanged_) mapChanged_();
    }
  }
}

void X11Connection::watchProperties(xcb_window_t window, bool watch) {
  if (!isConnected() || window == 0) return;
  const std::uint32_t mask = watch ? XCB_EVENT_MASK_PROPERTY_CHANGE : XCB_EVENT_MASK_NO_EVENT;
  xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &mask);
}

std::optional<std::string> X11Connection::property(xcb_window_t window, std::string_view name) {
  if (!isConnected() || window == 0) return std::nullopt;
  return x11::windowProperty(connection_, window, atom(name));
}

xcb_window_t X11Connection::windowProperty(xcb_window_t window, std::string_view name) {
  const auto bytes = property(window, name);
  xcb_window_t value = 0;
  if (bytes && bytes->size() >= sizeof value) std::memcpy(&value, bytes->data(), sizeof value);
  return value;
}

xcb_window_t X11Connection::focusWindow() {
  if (!isConnected()) return 0;
  const XcbPointer<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  return reply && reply->focus > XCB_INPUT_FOCUS_POINTER_ROOT ? reply->focus : 0;
}

xcb_window_t X11Connection::parent(xcb_window_t window) {
  if (!isConnected()) return 0;
  const XcbPointer<xcb_query_tree_reply_t> reply(
      xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
  return reply ? reply->parent : 0;
}

bool X11Connection::isKeyGrabbed(xcb_keycode_t key, std::uint16_t modifiers) {
  if (!isConnected()) return false;
  const XcbPointer<xcb_generic_error_t> error(xcb_request_check(
      connection_, xcb_grab_key_checked(connection_, 1, root_, modifiers, key, XCB_GRAB_MODE_ASYNC,
                                        XCB_GRAB_MODE_ASYNC)));
  if (error) return error->error_code == XCB_ACCESS;
  xcb_ungrab_key(connection_, key, root_, modifiers);
  xcb_flush(connection_);
  return false;
}

std::optional<std::uint32_t> X11Connection::group() {
  if (!isConnected()) return std::nullopt;
  const XcbPointer<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(
      connection_, xcb_xkb_get_state(connection_, XCB_XKB_ID_USE_CORE_KBD), nullptr));
  return reply ? std::optional<std::uint32_t>(reply->group) : std::nullopt;
}

xkb_keymap* X11Connection::newKeymap() {
  if (!isConnected()) return nullptr;
  const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(
      xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref);
  if (!context) return nullptr;
  const auto mapOf = [&](std::int32_t device) {
    return xkb_x11_keymap_new_from_device(context.get(), connection_, device,
                                          XKB_KEYMAP_COMPILE_NO_FLAGS);
  };
  const auto core = xkb_x11_get_core_keyboard_device_id(connection_);
  auto* keymap = core < 0 ? nullptr : mapOf(core);
  if (keymap == nullptr) return nullptr;
  // Each keyboard may have layouts of its own configuration; the core has those of the one that
  // typed last, and of none before the first key.
  const auto devices =
      xkb_keymap_num_layouts(keymap) > 1 ? std::vector<std::uint16_t>{} : keyboards();
  for (const auto device : devices) {
    auto* const own = mapOf(device);
    if (own != nullptr && xkb_keymap_num_layouts(own) > 1) {
      xkb_keymap_unref(keymap);
      return own;
    }
    xkb_keymap_unref(own);
  }
  return keymap;
}

std::vector<std::uint16_t> X11Connection::keyboards() {
  const XcbPointer<xcb_input_xi_query_device_reply_t> reply(xcb_input_xi_query_device_reply(
      connection_, xcb_input_xi_query_device(connection_, XCB_INPUT_DEVICE_ALL), nullptr));
  std::vector<std::uint16_t> keyboards;
  if (!reply) return keyboards;
  auto info = xcb_input_xi_query_device_infos_iterator(reply.get());
  for (; info.rem > 0; xcb_input_xi_device_info_next(&info)) {
    const auto isSlave = info.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD ||
                         info.data->type == XCB_INPUT_DEVICE_TYPE_FLOATING_SLAVE;
    if (isSlave) keyboards.push_back(info.data->deviceid);
  }
  return keyboards;
}

xcb_atom_t X11Connection::atom(std::string_view name) {
  if (const auto known = atoms_.find(name); known != atoms_.end()) return known->second;
  if (connection_ == nullptr) return XCB_ATOM_NONE;
  const auto cookie =
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const XcbPointer<xcb_intern_atom_reply_t> reply(
      xcb_intern_atom_reply(connection_, cookie, nullptr));
  if (!reply || reply->atom == XCB_ATOM_NONE) return XCB_ATOM_NONE;
  atoms_.emplace(name, reply->atom);
  return reply->atom;
}

}  // namespace kivra::x11
