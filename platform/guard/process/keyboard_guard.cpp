#include "platform/guard/process/keyboard_guard.h"

#include <algorithm>
#include <utility>

#include "platform/events.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::guard {

namespace {

// A key that the table of virtual keys does not know: it has no character in any layout.
constexpr std::uint16_t unknownKey = 0xFFFF;

// The Fn key of the platform's own keyboards.
constexpr std::uint16_t fnKey = 63;

constexpr std::uint64_t chordFlags =
    event_flags::shift | event_flags::control | event_flags::option | event_flags::command;

std::uint16_t virtualKeyOf(std::uint16_t evdev) { return virtualKey(evdev).value_or(unknownKey); }

}  // namespace

void KeyboardGuard::announce() { notify(ReportKind::ready); }

void KeyboardGuard::serve(Clock::time_point now) {
  while (const auto message = channel_.receive()) handle(*message);
  if (owesNotice_ && !channel_.hasBacklog()) {
    owesNotice_ = false;
    notify(ReportKind::timedOut);
  }
  if (decision_ && now >= decision_->deadline) expire();
  play(now);
  run();
}

std::optional<KeyboardGuard::Clock::time_point> KeyboardGuard::deadline() const {
  const auto pauseEnd = playing_ ? playing_->pauseEnd : std::nullopt;
  if (!decision_) return pauseEnd;
  return pauseEnd ? std::min(*pauseEnd, decision_->deadline) : decision_->deadline;
}

void KeyboardGuard::letGo() {
  breakOff();
  if (decision_) {
    notify(ReportKind::refused, decision_->number);
    pass(std::exchange(decision_, std::nullopt)->key);
  }
  for (const auto& item : std::exchange(waiting_, {})) {
    if (const auto* key = std::get_if<SeatKey>(&item)) {
      held_.set(key->evdev, key->isDown);
      pass(*key);
    }
  }
}

void KeyboardGuard::key(const SeatKey& key) {
  if (key.evdev >= KeyMap::keyLimit) return;
  add(key);
}

void KeyboardGuard::focusMoved() {
  // What is left of a script would be typed somewhere else.
  if (playing_) breakOff();
  add(Happening::wordBroken);
}

void KeyboardGuard::secrecyChanged(bool isSecret) {
  if (isSecret_ == isSecret) return;
  if (isSecret) letGo();
  isSecret_ = isSecret;
  if (!isSecret) add(Happening::wordBroken);
}

void KeyboardGuard::handle(const OrderMessage& message) {
  switch (message.order.kind) {
    case OrderKind::verdict:
      take(message);
      break;
    case OrderKind::post:
      post(message);
      break;
    case OrderKind::setConsumable:
      consumable_ = message.chords;
      break;
    case OrderKind::enable:
    case OrderKind::disable:
      setEnabled(message.order.kind == OrderKind::enable);
      break;
  }
}

void KeyboardGuard::setEnabled(bool enabled) {
  if (isEnabled_ == enabled) return;
  isEnabled_ = enabled;
  // What was typed while nobody listened is not known.
  if (enabled) report({.kind = ReportKind::wordBroken});
}

void KeyboardGuard::add(Item item) {
  waiting_.push_back(std::move(item));
  run();
}

void KeyboardGuard::run() {
  while (!waiting_.empty() && !isHeldUp()) {
    const auto item = waiting_.front();
    waiting_.pop_front();
    if (const auto* key = std::get_if<SeatKey>(&item)) {
      process(*key);
    } else {
      process(std::get<Happening>(item));
    }
  }
}

void KeyboardGuard::process(const SeatKey& key) {
  if (key.isRepeat) {
    repeat(key);
  } else if (key.isDown) {
    press(key);
  } else {
    release(key);
  }
}

void KeyboardGuard::process(Happening happening) {
  switch (happening) {
    case Happening::wordBroken:
      report({.kind = ReportKind::wordBroken});
      break;
    case Happening::leftButton:
      report({.kind = ReportKind::leftMouseDown, .flags = flags()});
      break;
    case Happening::rightButton:
      report({.kind = ReportKind::rightMouseDown, .flags = flags()});
      break;
  }
}

void KeyboardGuard::press(const SeatKey& key) {
  held_.set(key.evdev);
  repeat_ = 0;
  const auto flags = this->flags();
  if (seat_.keyMap().isModifier(key.evdev, flags)) {
    lone_ = key.evdev;
    const auto isFn = seat_.keyMap().flag(key.evdev) == event_flags::fn;
    report({.kind = ReportKind::flagsChanged,
            .keyCode = isFn ? fnKey : virtualKeyOf(key.evdev),
            .flags = flags});
    pass(key);
    return;
  }
  lone_ = 0;
  Report down{.kind = ReportKind::keyDown, .keyCode = virtualKeyOf(key.evdev), .flags = flags};
  const auto mayBeConsumed = isConsumable(down.keyCode, flags);
  if (mayBeConsumed && !isFlooded()) {
    decide(key, down);
    return;
  }
  if (mayBeConsumed) down = {.kind = ReportKind::wordBroken};
  report(down);
  lastPassed_ = number_;
  pass(key);
}

void KeyboardGuard::release(const SeatKey& key) {
  held_.reset(key.evdev);
  if (seat_.keyMap().flag(key.evdev) == 0) {
    pass(key);
    return;
  }
  const auto isFn = seat_.keyMap().flag(key.evdev) == event_flags::fn;
  const Report change{.kind = ReportKind::flagsChanged,
                      .keyCode = isFn ? fnKey : virtualKeyOf(key.evdev),
                      .flags = flags()};
  // A modifier tapped alone may stand for something, a word's undo for one, which then has its
  // place before the next key.
  if (std::exchange(lone_, 0) == key.evdev) {
    decide(key, change);
  } else {
    report(change);
    pass(key);
  }
}

void KeyboardGuard::repeat(const SeatKey& key) {
  const auto isModifier = seat_.keyMap().isModifier(key.evdev, flags());
  if (!isModifier && std::exchange(repeat_, key.evdev) != key.evdev) {
    report({.kind = ReportKind::wordBroken});
  }
  seat_.pass(key);
}

bool KeyboardGuard::isConsumable(std::uint16_t keyCode, std::uint64_t flags) const {
  if (!isEnabled_ || isSecret_) return false;
  return std::ranges::find(consumable_, Chord{keyCode, flags & chordFlags}) != consumable_.end();
}

bool KeyboardGuard::isFlooded() const {
  return static_cast<std::size_t>(std::ranges::count_if(waiting_, [](const Item& item) {
           const auto* key = std::get_if<SeatKey>(&item);
           return key != nullptr && key->isDown;
         })) > mostWaiting;
}

void KeyboardGuard::decide(const SeatKey& key, Report report) {
  report.awaitsVerdict = true;
  const auto number = this->report(report);
  if (number == 0) {
    pass(key);
  } else {
    decision_ = {.number = number, .key = key, .deadline = Clock::now() + decisionTime};
  }
}

void KeyboardGuard::take(const OrderMessage& verdict) {
  if (!decision_ || decision_->number != verdict.order.number) {
    // Too late: the key has passed, and others may have since.
    if (!verdict.keys.empty()) notify(ReportKind::refused, verdict.order.number);
    return;
  }
  const auto key = std::exchange(decision_, std::nullopt)->key;
  const auto isDropped = verdict.order.drop && key.isDown;
  if (isDropped) {
    seat_.drop(key);
  } else {
    // What is posted while the program decides of a key comes after that key.
    if (key.isDown) lastPassed_ = verdict.order.number;
    pass(key);
  }
  if (verdict.keys.empty()) return;
  posts_.push_back({verdict, isDropped ? key.evdev : std::uint16_t{0}});
  play(Clock::now());
}

void KeyboardGuard::expire() {
  const auto decision = *std::exchange(decision_, std::nullopt);
  if (decision.key.isDown) lastPassed_ = decision.number;
  pass(decision.key);
  isEnabled_ = false;
  notify(ReportKind::timedOut);
}

void KeyboardGuard::pass(const SeatKey& key) {
  if (key.isRepeat) return;
  if (!key.isDown) {
    // What a script has let go of is up already.
    if (!down_.test(key.evdev)) {
      seat_.drop(key);
      return;
    }
  } else {
    if (seat_.keyMap().flag(key.evdev) == 0) pressOwed(key);
    // Two keyboards have the same keys.
    if (down_.test(key.evdev)) type({{Step::Kind::release, key.evdev}});
  }
  down_.set(key.evdev, key.isDown);
  seat_.pass(key);
}

void KeyboardGuard::pressOwed(const SeatKey& key) {
  const auto missing = held_ & ~down_;
  if (missing.none()) return;
  Steps steps;
  for (std::uint16_t code = 0; code < KeyMap::keyLimit; ++code) {
    const auto isOwed = missing.test(code) && (seat_.keyMap().flag(code) & tappedAlone) != 0;
    if (isOwed && code != key.evdev) steps.push_back({Step::Kind::press, code});
  }
  if (!steps.empty()) type(steps);
}

void KeyboardGuard::post(const OrderMessage& message) {
  // The text that was to be changed has grown in the meantime: nothing may be erased any more.
  if (message.order.number != 0 && lastPassed_ > message.order.number) {
    notify(ReportKind::refused, message.order.number);
    return;
  }
  posts_.push_back({message, 0});
  play(Clock::now());
}

void KeyboardGuard::play(Clock::time_point now) {
  while (playing_ || !posts_.empty()) {
    if (!playing_) {
      const auto post = std::move(posts_.front());
      posts_.pop_front();
      playing_ = {.number = post.message.order.number,
                  .script = writeKeyScript(post.message.keys, {.keyMap = seat_.keyMap(),
                                                               .group = seat_.group(),
                                                               .down = down_,
                                                               .held = held_,
                                                               .trigger = post.trigger}),
                  .next = 0,
                  .pauseEnd = {}};
    }
    if (!playUntilPause(now)) return;
    type(playing_->script.after);
    playing_.reset();
  }
}

bool KeyboardGuard::playUntilPause(Clock::time_point now) {
  auto& [number, script, next, pauseEnd] = *playing_;
  if (pauseEnd && now < *pauseEnd) return false;
  const auto first = script.body.begin() + static_cast<std::ptrdiff_t>(next);
  const auto pause = std::ranges::find(first, script.body.end(), Step::Kind::pause, &Step::kind);
  type(Steps(first, pause));
  if (pause == script.body.end()) return true;
  next = static_cast<std::size_t>(pause - script.body.begin()) + 1;
  pauseEnd = now + std::chrono::milliseconds(pause->value);
  return false;
}

void KeyboardGuard::breakOff() {
  if (playing_) {
    type(playing_->script.after);
    notify(ReportKind::refused, playing_->number);
  }
  for (const auto& post : posts_) notify(ReportKind::refused, post.message.order.number);
  playing_.reset();
  posts_.clear();
}

void KeyboardGuard::type(const Steps& steps) {
  for (const auto& step : steps) {
    if (step.kind == Step::Kind::press) down_.set(step.value);
    if (step.kind == Step::Kind::release) down_.reset(step.value);
  }
  if (!steps.empty()) seat_.type(steps);
}

std::uint64_t KeyboardGuard::flags() const {
  std::uint64_t flags = 0;
  if (held_.none()) return flags;
  for (std::uint16_t key = 0; key < KeyMap::keyLimit; ++key) {
    if (held_.test(key)) flags |= seat_.keyMap().flag(key);
  }
  return flags;
}

std::uint32_t KeyboardGuard::report(Report report) {
  report.number = ++number_;
  if (!isEnabled_ || isSecret_) return 0;
  report.group = seat_.group();
  if (channel_.send(report)) return report.number;
  // The program has stopped reading: the tap is off until it is back.
  isEnabled_ = false;
  owesNotice_ = true;
  return 0;
}

void KeyboardGuard::notify(ReportKind kind, std::uint32_t number) {
  const auto isSent =
      channel_.send({.number = number, .kind = kind, .keyCode = 0, .group = seat_.group()});
  if (!isSent && kind == ReportKind::timedOut) owesNotice_ = true;
}

}  // namespace kivra::guard
