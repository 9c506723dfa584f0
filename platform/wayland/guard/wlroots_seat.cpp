#include "platform/wayland/guard/wlroots_seat.h"

#include <chrono>
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
    : seat_(connection_.bind<wl_seat>(wl_seat_interface), wl_seat_destroy),
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
      .keymap = Calls<&WlrootsSeat::takeMap>{},
      .key = Calls<&WlrootsSeat::takeKey>{},
      .modifiers = Calls<&WlrootsSeat::takeModifiers>{},
      .repeat_info = Calls<&WlrootsSeat::takeRepeatInfo>{}};
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

std::vector<int> WlrootsSeat::fds() const { return {connection_.fd(), stream_.repeats().fd()}; }

bool WlrootsSeat::dispatch(guard::SeatListener& listener) {
  listener_ = &listener;
  const auto isThere = connection_.dispatch();
  tellFocus();
  if (const auto key = stream_.repeats().take()) {
    listener.key({.evdev = *key, .isDown = true, .isRepeat = true});
  }
  listener_ = nullptr;
  return isThere;
}

bool WlrootsSeat::flush() {
  stream_.repeats().arm();
  connection_.flush();
  return false;
}

void WlrootsSeat::pass(const guard::SeatKey& key) {
  // Applications repeat keys themselves.
  if (!key.isRepeat) stream_.send(key.evdev, key.isDown);
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

void WlrootsSeat::takeMap(std::uint32_t /*format*/, std::int32_t fd, std::uint32_t size) {
  const auto before = stream_.map();
  stream_.setMap(takeMapText(fd, size));
  if (stream_.map() == before) return;
  hands_.emplace(stream_.map());
  // A keyboard on which the same keys type something else.
  if (before && listener_ != nullptr) listener_->foreignKey();
}

void WlrootsSeat::takeKey(std::uint32_t /*serial*/, std::uint32_t time, std::uint32_t key,
                          std::uint32_t state) {
  const auto isDown = state == WL_KEYBOARD_KEY_STATE_PRESSED;
  if (key >= guard::keyCount) return;
  const auto evdev = static_cast<std::uint16_t>(key);
  // The compositor may have kept the release to itself, for a binding of its own.
  if (isDown && held_.test(evdev)) handKey({.evdev = evdev, .isDown = false, .timeMs = time});
  handKey({.evdev = evdev, .isDown = isDown, .timeMs = time});
}

void WlrootsSeat::handKey(const guard::SeatKey& key) {
  if (!hands_) return;
  hands_->key(key.evdev, key.isDown);
  held_.set(key.evdev, key.isDown);
  if (listener_ != nullptr) {
    tellFocus();
    listener_->key(key);
  } else if (stream_.down().test(key.evdev) != key.isDown) {
    stream_.send(key.evdev, key.isDown);
  }
}

void WlrootsSeat::takeModifiers(std::uint32_t /*serial*/, std::uint32_t depressed,
                                std::uint32_t latched, std::uint32_t locked, std::uint32_t group) {
  if (!hands_) return;
  releaseLost(hands_->modifiers().depressed & ~depressed);
  const auto explained = hands_->modifiers();
  const Modifiers told = {depressed, latched, locked, group};
  if (told == explained) return;
  hands_->set(told);
  stream_.follow(explained, told);
}

// The same with modifiers, of which it tells otherwise.
void WlrootsSeat::releaseLost(std::uint32_t modifiers) {
  for (std::uint16_t key = 0; modifiers != 0 && key < KeyMap::keyLimit; ++key) {
    if (!held_.test(key) || keyMap().flag(key) == 0) continue;
    ModifierState alone(stream_.map());
    alone.key(key, true);
    if ((alone.modifiers().depressed & modifiers) != 0) handKey({.evdev = key, .isDown = false});
  }
}

void WlrootsSeat::takeRepeatInfo(std::int32_t rate, std::int32_t delay) {
  stream_.repeats().setDelay(std::chrono::milliseconds(rate > 0 ? delay : 0));
}

void WlrootsSeat::tellFocus() {
  const auto hasMoved = toplevels_.takeMove();
  if (field_.takeMove() || hasMoved) listener_->focusMoved();
  listener_->secrecyChanged(!toplevels_.isAnyActive() || field_.isSecret());
}

}  // namespace kivra::wayland
