#include "platform/wayland/guard/kwin_seat.h"

#include <xkbcommon/xkbcommon.h>

#include <array>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "platform/wayland/client/calls.h"
#include "platform/wayland/guard/event_time.h"

namespace kivra::wayland {

namespace {

// KWin's own; it tells an input method of no other.
constexpr std::chrono::milliseconds repeatDelay{600};

// GTK and Qt take a character that is committed before keys that they have not come to: 60 ms were
// too few for them beside ten busy programs.
constexpr std::chrono::milliseconds characterPause{150};

}  // namespace

std::chrono::milliseconds KwinSeat::pauseBeforeCharacters() const { return characterPause; }

KwinSeat::KwinSeat()
    : GrabSeat(static_cast<KeyOutlet&>(*this)),
      method_(connection_.bind<zwp_input_method_v1>(zwp_input_method_v1_interface),
              zwp_input_method_v1_destroy),
      context_(nullptr, zwp_input_method_context_v1_destroy),
      grab_(nullptr, wl_keyboard_destroy) {
  static constexpr zwp_input_method_v1_listener listener = {
      .activate = Calls<&KwinSeat::activate>{}, .deactivate = Calls<&KwinSeat::deactivate>{}};
  zwp_input_method_v1_add_listener(method_.get(), &listener, this);
  stream_.repeats().setDelay(repeatDelay);
  if (!connection_.roundtrip()) throw std::runtime_error("KWin не отвечает");
}

KwinSeat::~KwinSeat() {
  if (!context_) return;
  // Keys that are on their way go on as long as there is a context for them.
  connection_.roundtrip();
  KwinSeat::settle();
  grab_.reset();
  stream_.release();
  connection_.roundtrip();
}

void KwinSeat::activate(zwp_input_method_context_v1* context) {
  static constexpr zwp_input_method_context_v1_listener contextListener = {
      .surrounding_text = Ignores{},
      .reset = Ignores{},
      .content_type = Calls<&KwinSeat::takeContent>{},
      .invoke_action = Ignores{},
      .commit_state = Ignores{},
      .preferred_language = Ignores{}};
  static constexpr wl_keyboard_listener grabListener = {
      .keymap = Calls<&KwinSeat::takeGrabsMap>{},
      .enter = Ignores{},
      .leave = Ignores{},
      .key = Calls<&KwinSeat::takeKey, KwinSeat>{},
      .modifiers = Calls<&KwinSeat::takeModifiersBehindKey>{},
      .repeat_info = Ignores{}};
  leave();
  context_.reset(context);
  zwp_input_method_context_v1_add_listener(context, &contextListener, this);
  grab_.reset(zwp_input_method_context_v1_grab_keyboard(context));
  wl_keyboard_add_listener(grab_.get(), &grabListener, this);
  field_.enter({});
}

void KwinSeat::deactivate(zwp_input_method_context_v1* context) {
  if (context == context_.get()) leave();
}

void KwinSeat::leave() {
  if (!context_) return;
  releaseHeld();
  settle();
  stream_.release();
  field_.leave();
  // What has not been answered has come to a context that KWin has given up.
  underway_.clear();
  isGrabbed_ = false;
  grab_.reset();
  context_.reset();
}

void KwinSeat::takeContent(std::uint32_t hints, std::uint32_t purpose) {
  field_.enter({.hints = hints, .purpose = purpose});
}

void KwinSeat::takeGrabsMap(std::uint32_t format, std::int32_t fd, std::uint32_t size) {
  isGrabbed_ = true;
  takeMap(format, fd, size);
}

// A layout that others have selected is told of with the next key, and only behind it.
void KwinSeat::hand(const guard::SeatKey& key) {
  settle();
  last_ = key;
}

void KwinSeat::settle() {
  if (const auto key = std::exchange(last_, std::nullopt)) GrabSeat::hand(*key);
}

void KwinSeat::takeModifiersBehindKey(std::uint32_t serial, std::uint32_t depressed,
                                      std::uint32_t latched, std::uint32_t locked,
                                      std::uint32_t group) {
  takeModifiers(serial, depressed, latched, locked, group);
  settle();
}

// Each key has its modifiers with it: KWin tells applications of those of the hands at once, before
// the keys that wait.
void KwinSeat::key(std::uint16_t evdev, bool isDown) {
  if (!context_) return;
  if (isDown) sendModifiers();
  zwp_input_method_context_v1_key(
      context_.get(), 0, eventTime(), evdev,
      isDown ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
  connection_.makeRoom();
}

void KwinSeat::modifiers(const Modifiers& modifiers) {
  current_ = modifiers;
  if (!context_) return;
  sendModifiers();
  connection_.makeRoom();
}

// KWin has one state for the hands' keys and for what is sent here. Only when it answers is it
// known between which of those keys it has taken this over.
void KwinSeat::sendModifiers() {
  static constexpr wl_callback_listener listener = {.done = Calls<&KwinSeat::takeAnswer>{}};
  zwp_input_method_context_v1_modifiers(context_.get(), 0, current_.depressed, current_.latched,
                                        current_.locked, current_.group);
  auto& underway = underway_.emplace_back(Underway{current_, connection_.sync()});
  wl_callback_add_listener(underway.answer.get(), &listener, this);
}

void KwinSeat::takeAnswer(std::uint32_t /*serial*/) {
  if (hands_) hands_->set(underway_.front().modifiers);
  underway_.pop_front();
}

void KwinSeat::commit(std::uint32_t scalar) {
  if (!context_) return;
  std::array<char, 8> text{};
  xkb_keysym_to_utf8(xkb_utf32_to_keysym(scalar), text.data(), text.size());
  zwp_input_method_context_v1_commit_string(context_.get(), 0, text.data());
  connection_.makeRoom();
}

}  // namespace kivra::wayland
