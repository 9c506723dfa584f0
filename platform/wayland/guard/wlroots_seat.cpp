#include "platform/wayland/guard/wlroots_seat.h"

#include <stdexcept>

#include "platform/wayland/client/calls.h"

namespace kivra::wayland {

namespace {

Owned<zwp_input_method_v2> inputMethod(Connection& connection, wl_seat* seat) {
  const Owned<zwp_input_method_manager_v2> manager(
      connection.bind<zwp_input_method_manager_v2>(zwp_input_method_manager_v2_interface),
      zwp_input_method_manager_v2_destroy);
  return {zwp_input_method_manager_v2_get_input_method(manager.get(), seat),
          zwp_input_method_v2_destroy};
}

}  // namespace

WlrootsSeat::WlrootsSeat()
    : GrabSeat(keyboard_),
      seat_(connection_.bind<wl_seat>(wl_seat_interface), wl_seat_destroy),
      toplevels_(connection_),
      keyboard_(connection_, seat_.get()),
      method_(inputMethod(connection_, seat_.get())),
      grab_(nullptr, zwp_input_method_keyboard_grab_v2_release) {
  static constexpr zwp_input_method_v2_listener methodListener = {
      .activate = Calls<&WlrootsSeat::activate>{},
      .deactivate = Calls<&WlrootsSeat::deactivate>{},
      .surrounding_text = Ignores{},
      .text_change_cause = Ignores{},
      .content_type = Calls<&WlrootsSeat::takeContent>{},
      .done = Calls<&WlrootsSeat::takeField>{},
      .unavailable = Calls<&WlrootsSeat::refuse>{}};
  zwp_input_method_v2_add_listener(method_.get(), &methodListener, this);
  constexpr auto silent = "композитор Wayland не отвечает";
  if (!connection_.roundtrip()) throw std::runtime_error(silent);
  if (isRefused_) throw std::runtime_error("в сеансе уже работает другой метод ввода");

  static constexpr zwp_input_method_keyboard_grab_v2_listener grabListener = {
      .keymap = Calls<&WlrootsSeat::takeMap, WlrootsSeat>{},
      .key = Calls<&WlrootsSeat::takeKey, WlrootsSeat>{},
      .modifiers = Calls<&WlrootsSeat::takeModifiers, WlrootsSeat>{},
      .repeat_info = Calls<&WlrootsSeat::takeRepeatInfo, WlrootsSeat>{}};
  // sway 1.7 ends with a fault when a seat that has no keyboard is grabbed; it has the virtual one
  // now.
  grab_.reset(zwp_input_method_v2_grab_keyboard(method_.get()));
  zwp_input_method_keyboard_grab_v2_add_listener(grab_.get(), &grabListener, this);
  if (!connection_.roundtrip()) throw std::runtime_error(silent);
}

WlrootsSeat::~WlrootsSeat() {
  // With the input method its grab ends. What has been on its way goes on.
  method_.reset();
  connection_.roundtrip();
  stream_.release();
  // Of a client that is gone compositors read nothing any more.
  connection_.roundtrip();
}

bool WlrootsSeat::isOffered() try {
  const Connection connection;
  return connection.offers(zwp_input_method_manager_v2_interface) &&
         connection.offers(zwp_virtual_keyboard_manager_v1_interface) &&
         connection.offers(zwlr_foreign_toplevel_manager_v1_interface);
} catch (const std::runtime_error&) {
  return false;
}

void WlrootsSeat::takeContent(std::uint32_t hints, std::uint32_t purpose) {
  announced_.content = {.hints = hints, .purpose = purpose};
}

void WlrootsSeat::takeField() {
  if (announced_.isInField) {
    field_.enter(announced_.content);
  } else {
    field_.leave();
  }
}

bool WlrootsSeat::takeMove() {
  const auto hasMoved = toplevels_.takeMove();
  return field_.takeMove() || hasMoved;
}

}  // namespace kivra::wayland
