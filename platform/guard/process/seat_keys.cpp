#include "platform/guard/process/seat_keys.h"

#include "platform/events.h"

namespace kivra::guard {

Steps tapBetween(const KeyMap& keyMap, const KeySet& down) {
  std::uint64_t flags = 0;
  for (std::uint16_t key = 0; key < KeyMap::keyLimit; ++key) {
    if (down.test(key)) flags |= keyMap.flag(key);
  }
  const auto key = keyMap.emptyKey();
  if ((flags & tappedAlone) == 0 || key == 0) return {};
  return {{Step::Kind::press, key}, {Step::Kind::release, key}};
}

void SeatKeys::turn(const SeatKey& key) {
  if (key.isRepeat) return;
  auto& hands = hands_[key.evdev];
  if (key.isDown) {
    ++hands;
  } else if (hands > 0) {
    --hands;
  } else {
    // Held since before the guard: the application has had the press from elsewhere.
    down_.set(key.evdev);
  }
}

void SeatKeys::pass(const SeatKey& key) {
  const auto isDown = down_.test(key.evdev);
  const auto goesOn = key.isRepeat ? isDown
                      : key.isDown ? !isDown
                                   : isDown && hands_[key.evdev] == 0;
  if (!goesOn) {
    seat_.drop(key);
    return;
  }
  if (key.isDown && !key.isRepeat) pressOwed(key.evdev);
  down_.set(key.evdev, key.isDown);
  seat_.pass(key);
}

void SeatKeys::drop(const SeatKey& key) {
  seat_.drop(key);
  type(tapBetween(seat_.keyMap(), down_));
}

void SeatKeys::pressOwed(std::uint16_t key) {
  const auto missing = held() & ~down_;
  if (missing.none()) return;
  Steps steps;
  for (std::uint16_t code = 0; code < KeyMap::keyLimit; ++code) {
    const auto isOwed = missing.test(code) && (seat_.keyMap().flag(code) & tappedAlone) != 0;
    if (isOwed && code != key) steps.push_back({Step::Kind::press, code});
  }
  type(steps);
}

void SeatKeys::type(const Steps& steps) {
  if (steps.empty()) return;
  for (const auto& step : steps) {
    if (step.kind == Step::Kind::press) down_.set(step.value);
    if (step.kind == Step::Kind::release) down_.reset(step.value);
  }
  seat_.type(steps);
}

KeySet SeatKeys::held() const {
  KeySet held;
  for (std::uint16_t key = 0; key < keyCount; ++key) held.set(key, hands_[key] > 0);
  return held;
}

std::uint64_t SeatKeys::flags() const {
  std::uint64_t flags = 0;
  for (std::uint16_t key = 0; key < KeyMap::keyLimit; ++key) {
    if (hands_[key] > 0) flags |= seat_.keyMap().flag(key);
  }
  return flags;
}

}  // namespace kivra::guard
