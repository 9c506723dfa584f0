#include "platform/ibus/guard/ibus_seat.h"

#include <chrono>
#include <stdexcept>
#include <utility>

namespace kivra::ibus {

namespace {

constexpr std::uint32_t lockMask = 1U << 1;  // of IBus and xkbcommon

// IBus's hint for what is to be kept from others, and the text-input protocols'.
constexpr std::uint32_t privateHint = 1U << 11;
constexpr std::uint32_t sensitiveData = 0x80;

wayland::FieldWatch::Content contentOf(const FieldContent& content) {
  return {.hints = (content.hints & privateHint) != 0 ? sensitiveData : 0,
          .purpose = content.purpose};
}

}  // namespace

IbusSeat::IbusSeat()
    : map_(connection_, [this] { takeMap(); }),
      engine_(*this),
      desktop_(DesktopWatch::guard),
      outlet_(engine_),
      stream_(outlet_) {}

// IBus must not ask somebody who is gone: what it asks while the shell takes its own engine back is
// answered.
IbusSeat::~IbusSeat() {
  using Clock = std::chrono::steady_clock;
  constexpr std::uint64_t patience = 50'000;  // us
  const auto until = Clock::now() + std::chrono::seconds(1);
  outlet_.flush();
  desktop_.leave();
  while (engine_.isEnabled() && engine_.dispatch() && Clock::now() < until) engine_.wait(patience);
}

std::vector<int> IbusSeat::fds() const {
  return {connection_.fd(), engine_.fd(), desktop_.fd(), outlet_.fd()};
}

bool IbusSeat::dispatch(guard::SeatListener& listener) {
  listener_ = &listener;
  const auto isThere = connection_.dispatch() && desktop_.dispatch();
  takeDesktop();
  const auto isServed = engine_.dispatch();
  tellFocus();
  listener_ = nullptr;
  return isThere && isServed;
}

bool IbusSeat::flush() {
  outlet_.flush();
  connection_.flush();
  engine_.flush();
  return false;
}

void IbusSeat::takeMap() {
  stream_.setMap(map_.text());
  if (!stream_.map()) return;
  outlet_.setCompiledMap(stream_.map());
  hands_.state.emplace(stream_.map());
  // A keyboard on which the same keys type something else.
  if (listener_ != nullptr) listener_->foreignKey();
}

void IbusSeat::takeDesktop() {
  const auto before = outlet_.layouts().group();
  if (const auto group = outlet_.layouts().takeForeign(desktop_.state())) {
    stream_.follow({.group = before}, {.group = *group});
  }
}

void IbusSeat::enterField(std::string_view client) {
  // Those that XWayland's clients have take up what is forwarded in an order of their own.
  if (!client.empty() && client != "gnome-shell") return leaveField();
  field_.enter(contentOf(content_));
  outlet_.enter();
}

void IbusSeat::leaveField() {
  releaseHeld();
  field_.leave();
}

void IbusSeat::takeContent(const FieldContent& content) {
  content_ = content;
  if (field_.isInField()) field_.enter(contentOf(content_));
}

void IbusSeat::askKey(AskedKey key) {
  if (key.evdev >= guard::keyCount || !hands_.state || listener_ == nullptr) {
    Engine::answer(key, false);
    return;
  }
  takeLocks(key.state);
  const guard::SeatKey told = {.evdev = key.evdev,
                               .isDown = key.isDown,
                               .isRepeat = key.isDown && hands_.held.test(key.evdev)};
  // The shell tells applications of modifiers whatever becomes of their keys, but not before these
  // are answered.
  if (keyMap().flag(key.evdev) != 0) {
    Engine::answer(key, false);
  } else {
    outlet_.take(std::move(key));
  }
  tellKey(told);
}

// The locks are the shell's own; others may have set them.
void IbusSeat::takeLocks(std::uint32_t state) {
  const auto explained = hands_.state->modifiers();
  auto told = explained;
  told.locked = (explained.locked & ~lockMask) | (state & lockMask);
  if (told == explained) return;
  hands_.state->set(told);
  stream_.follow(explained, told);
}

void IbusSeat::tellKey(const guard::SeatKey& key) {
  tellFocus();
  if (!key.isRepeat) {
    hands_.state->key(key.evdev, key.isDown);
    hands_.held.set(key.evdev, key.isDown);
    outlet_.setHands(hands_.state->modifiers().depressed);
  }
  listener_->key(key);
}

// Nobody asks about what becomes of them elsewhere.
void IbusSeat::releaseHeld() {
  if (listener_ == nullptr) return;
  for (std::uint16_t key = 0; key < guard::keyCount; ++key) {
    if (hands_.held.test(key)) tellKey({.evdev = key, .isDown = false});
  }
}

void IbusSeat::tellFocus() {
  const auto window = desktop_.state().window;
  const auto hasMoved = std::exchange(window_, window) != window;
  if (field_.takeMove() || hasMoved) listener_->focusMoved();
  const auto isServed = window != 0 && desktop_.state().group != DesktopWatch::noGroup &&
                        field_.isInField() && !field_.isSecret();
  listener_->secrecyChanged(!isServed);
}

void IbusSeat::pass(const guard::SeatKey& key) {
  outlet_.beginPass();
  // The shell repeats keys that go on, and asks about them.
  if (key.isRepeat) {
    outlet_.key(key.evdev, true);
  } else {
    stream_.send(key.evdev, key.isDown);
  }
  outlet_.endPass();
}

}  // namespace kivra::ibus
