#include "platform/wayland/guard/grab_seat.h"

#include <chrono>

namespace kivra::wayland {

std::vector<int> GrabSeat::fds() const { return {connection_.fd(), stream_.repeats().fd()}; }

bool GrabSeat::dispatch(guard::SeatListener& listener) {
  listener_ = &listener;
  const auto isThere = connection_.dispatch();
  settle();
  tellFocus();
  if (const auto key = stream_.repeats().take()) {
    listener.key({.evdev = *key, .isDown = true, .isRepeat = true});
  }
  listener_ = nullptr;
  return isThere;
}

bool GrabSeat::flush() {
  stream_.repeats().arm();
  connection_.flush();
  return false;
}

void GrabSeat::pass(const guard::SeatKey& key) {
  // Applications repeat keys themselves.
  if (!key.isRepeat) stream_.send(key.evdev, key.isDown);
}

void GrabSeat::takeMap(std::uint32_t /*format*/, std::int32_t fd, std::uint32_t size) {
  const auto before = stream_.map();
  stream_.setMap(takeMapText(fd, size));
  if (stream_.map() == before) return;
  hands_.emplace(stream_.map());
  // A keyboard on which the same keys type something else.
  if (before && listener_ != nullptr) listener_->foreignKey();
}

void GrabSeat::takeKey(std::uint32_t /*serial*/, std::uint32_t time, std::uint32_t key,
                       std::uint32_t state) {
  if (key >= guard::keyCount) return;
  const auto isDown = state == WL_KEYBOARD_KEY_STATE_PRESSED;
  const auto evdev = static_cast<std::uint16_t>(key);
  // The compositor may have kept the release to itself, for a binding of its own.
  if (isDown && held_.test(evdev)) turn({.evdev = evdev, .isDown = false, .timeMs = time});
  turn({.evdev = evdev, .isDown = isDown, .timeMs = time});
}

void GrabSeat::turn(const guard::SeatKey& key) {
  if (!hands_) return;
  hands_->key(key.evdev, key.isDown);
  held_.set(key.evdev, key.isDown);
  hand(key);
}

void GrabSeat::hand(const guard::SeatKey& key) {
  if (listener_ != nullptr) {
    tellFocus();
    listener_->key(key);
  } else if (stream_.down().test(key.evdev) != key.isDown) {
    stream_.send(key.evdev, key.isDown);
  }
}

void GrabSeat::takeModifiers(std::uint32_t /*serial*/, std::uint32_t depressed,
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
void GrabSeat::releaseLost(std::uint32_t modifiers) {
  for (std::uint16_t key = 0; modifiers != 0 && key < KeyMap::keyLimit; ++key) {
    if (!held_.test(key) || keyMap().flag(key) == 0) continue;
    ModifierState alone(stream_.map());
    alone.key(key, true);
    if ((alone.modifiers().depressed & modifiers) != 0) turn({.evdev = key, .isDown = false});
  }
}

void GrabSeat::releaseHeld() {
  for (std::uint16_t key = 0; key < guard::keyCount; ++key) {
    if (held_.test(key)) turn({.evdev = key, .isDown = false});
  }
}

void GrabSeat::takeRepeatInfo(std::int32_t rate, std::int32_t delay) {
  stream_.repeats().setDelay(std::chrono::milliseconds(rate > 0 ? delay : 0));
}

void GrabSeat::tellFocus() {
  if (takeMove()) listener_->focusMoved();
  listener_->secrecyChanged(isSecret());
}

}  // namespace kivra::wayland
