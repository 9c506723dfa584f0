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

}  // namespace

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
      .keymap = Calls<&KwinSeat::takeMap, KwinSeat>{},
      .enter = Ignores{},
      .leave = Ignores{},
      .key = Calls<&KwinSeat::takeKey, KwinSeat>{},
      .modifiers = Calls<&KwinSeat::takeOverruled>{},
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
  stream_.release();
  field_.leave();
  grab_.reset();
  context_.reset();
}

void KwinSeat::takeContent(std::uint32_t hints, std::uint32_t purpose) {
  field_.enter({.hints = hints, .purpose = purpose});
}

// KWin tells applications of the hands' modifiers at once, before the keys that wait. It tells the
// seat what it has at that moment, which the stream may have changed since: what it has told before
// is nothing new.
void KwinSeat::takeOverruled(std::uint32_t serial, std::uint32_t depressed, std::uint32_t latched,
                             std::uint32_t locked, std::uint32_t group) {
  serial_ = serial;
  if (!hands_) return;
  const Modifiers told = {depressed, latched, locked, group};
  const auto before = std::exchange(told_, told);
  const auto explained = hands_->modifiers();
  auto news = explained;
  if (told.locked != before.locked) news.locked = told.locked;
  if (told.group != before.group) news.group = told.group;
  hands_->set(news);
  stream_.follow(explained, news);
  current_ = told;
  stream_.overrule(told);
}

// Each key has its modifiers with it: those of the hands may have come in between.
void KwinSeat::key(std::uint16_t evdev, bool isDown) {
  if (!context_) return;
  if (isDown) modifiers(current_);
  zwp_input_method_context_v1_key(
      context_.get(), serial_, eventTime(), evdev,
      isDown ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
  connection_.makeRoom();
}

// They are the compositor's own from then on, and with them those of the hands' keyboard.
void KwinSeat::modifiers(const Modifiers& modifiers) {
  if (!context_) return;
  current_ = modifiers;
  zwp_input_method_context_v1_modifiers(context_.get(), serial_, modifiers.depressed,
                                        modifiers.latched, modifiers.locked, modifiers.group);
  connection_.makeRoom();
  hands_->set(modifiers);
}

void KwinSeat::commit(std::uint32_t scalar) {
  if (!context_) return;
  std::array<char, 8> text{};
  xkb_keysym_to_utf8(xkb_utf32_to_keysym(scalar), text.data(), text.size());
  zwp_input_method_context_v1_commit_string(context_.get(), serial_, text.data());
  connection_.makeRoom();
}

}  // namespace kivra::wayland
