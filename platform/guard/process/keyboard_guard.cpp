#include "platform/guard/process/keyboard_guard.h"

#include <algorithm>
#include <utility>

#include "platform/events.h"
#include "platform/guard/process/key_script.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::guard {

namespace {

// A key that the table of virtual keys does not know: it has no character in any layout.
constexpr std::uint16_t unknownKey = 0xFFFF;

constexpr std::uint16_t noKey = 0;

// The Fn key of the platform's own keyboards.
constexpr std::uint16_t fnKey = 63;

constexpr std::uint64_t chordFlags =
    event_flags::shift | event_flags::control | event_flags::option | event_flags::command;

std::uint16_t virtualKeyOf(std::uint16_t evdev) { return virtualKey(evdev).value_or(unknownKey); }

}  // namespace

bool KeyboardGuard::serve(Clock::time_point now) {
  now_ = now;
  if (!seat_.dispatch(*this)) return false;
  while (const auto message = channel_.receive()) handle(*message);
  reports_.serve();
  if (decision_ && now >= decision_->deadline) {
    reports_.timeOut();
    endDecision({});
  }
  run();
  return true;
}

std::optional<KeyboardGuard::Clock::time_point> KeyboardGuard::deadline() const {
  const auto pauseEnd = player_.pauseEnd();
  if (!decision_) return pauseEnd;
  return pauseEnd ? std::min(*pauseEnd, decision_->deadline) : decision_->deadline;
}

void KeyboardGuard::letGo() {
  // What has been erased is typed, whether or not the application had its time.
  while (const auto pauseEnd = player_.pauseEnd()) {
    now_ = *pauseEnd;
    run();
  }
  secrecyChanged(true);
}

void KeyboardGuard::key(const SeatKey& key) {
  if (key.evdev < keyCount) add(key);
}

void KeyboardGuard::focusMoved() {
  waiting_.emplace_back(Happening::wordBroken);
  // What is left of a script would be typed somewhere else.
  breakOff();
  run();
}

void KeyboardGuard::secrecyChanged(bool isSecret) {
  if (reports_.isSecret() == isSecret) return;
  reports_.setSecret(isSecret);
  if (!isSecret) {
    add(Happening::wordBroken);
    return;
  }
  breakOff();
  endDecision({});
  run();
}

void KeyboardGuard::handle(const OrderMessage& message) {
  switch (message.order.kind) {
    case OrderKind::verdict:
      applyVerdict(message);
      break;
    case OrderKind::post:
      posts_.push_back({message, std::nullopt});
      run();
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
  reports_.setEnabled(enabled);
  // A program that listens no more does not answer, either.
  if (enabled) return;
  endDecision({});
  run();
}

void KeyboardGuard::applyVerdict(const OrderMessage& verdict) {
  if (decision_ && decision_->number == verdict.order.number) {
    endDecision(verdict);
    run();
  } else if (!verdict.keys.empty()) {
    // Too late: the key has passed, and others may have since.
    reports_.notice(ReportKind::refused, verdict.order.number);
  }
}

void KeyboardGuard::endDecision(const OrderMessage& verdict) {
  if (!decision_) return;
  auto& post = posts_.emplace_back(Post{verdict, decision_->key});
  post.message.order.number = decision_->number;
  decision_.reset();
}

void KeyboardGuard::breakOff() {
  if (const auto number = player_.breakOff()) reports_.notice(ReportKind::refused, *number);
}

void KeyboardGuard::add(const Item& item) {
  waiting_.push_back(item);
  run();
}

void KeyboardGuard::run() {
  while (play() && !decision_ && !waiting_.empty()) {
    const auto item = waiting_.front();
    waiting_.pop_front();
    if (const auto* key = std::get_if<SeatKey>(&item)) {
      process(*key);
    } else {
      process(std::get<Happening>(item));
    }
  }
}

bool KeyboardGuard::play() {
  while (player_.play(now_)) {
    if (posts_.empty()) return true;
    const auto post = std::move(posts_.front());
    posts_.pop_front();
    begin(post);
  }
  return false;
}

void KeyboardGuard::begin(const Post& post) {
  const auto& [message, key] = post;
  const auto refused = isRefused(message);
  const auto isDropped = key && key->isDown && message.order.drop != 0 && !refused;
  if (isDropped) {
    keys_.drop(*key);
  } else if (key) {
    // What is posted while the program decides of a key comes after that key.
    if (key->isDown) reports_.changedAt(message.order.number);
    keys_.pass(*key);
  }
  if (refused) {
    reports_.notice(ReportKind::refused, message.order.number);
  } else if (!message.keys.empty()) {
    player_.start(message.order.number,
                  writeKeyScript(message.keys, {.keyMap = seat_.keyMap(),
                                                .group = seat_.group(),
                                                .down = keys_.down(),
                                                .held = keys_.held(),
                                                .isCapsLocked = seat_.isCapsLocked(),
                                                .trigger = isDropped ? key->evdev : noKey}));
  }
}

bool KeyboardGuard::isRefused(const OrderMessage& message) const {
  if (message.keys.empty()) return false;
  if (reports_.isSecret() || reports_.isOvertaken(message.order.number)) return true;
  // Buttons and the focus wait for nobody: the text that was to be changed has grown, or is no
  // longer where the keys would go.
  const auto isKey = [](const Item& item) { return std::holds_alternative<SeatKey>(item); };
  return message.order.number != 0 && !std::ranges::all_of(waiting_, isKey);
}

void KeyboardGuard::process(const SeatKey& key) {
  keys_.turn(key);
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
      reports_.event({.kind = ReportKind::wordBroken});
      break;
    case Happening::leftButton:
      reports_.event({.kind = ReportKind::leftMouseDown, .flags = keys_.flags()});
      break;
    case Happening::rightButton:
      reports_.event({.kind = ReportKind::rightMouseDown, .flags = keys_.flags()});
      break;
  }
  reports_.changedAt(reports_.number());
  isMidWord_ = false;
}

void KeyboardGuard::press(const SeatKey& key) {
  repeat_ = 0;
  const auto flags = keys_.flags();
  const auto isModifier = seat_.keyMap().isModifier(key.evdev, flags);
  isLone_ = isModifier;
  if (isModifier) {
    reports_.event(modifierChange(key));
  } else if (!keys_.isDown(key.evdev)) {
    if (pressTyping(key, flags)) return;
    reports_.changedAt(reports_.number());
  }
  keys_.pass(key);
}

bool KeyboardGuard::pressTyping(const SeatKey& key, std::uint64_t flags) {
  Report down{.kind = ReportKind::keyDown, .keyCode = virtualKeyOf(key.evdev), .flags = flags};
  const auto endsWord = isConsumable(down.keyCode, flags);
  if (endsWord && reports_.isOn() && !isFlooded()) {
    isMidWord_ = false;
    if (decide(key, down)) return true;
  }
  // What ends the word unasked, and the rest of a word whose beginning is not known, is not the
  // program's to mend: it would mend a part.
  if (endsWord || isMidWord_) down.keyCode = unknownKey;
  const auto isTold = reports_.event(down);
  isMidWord_ = !endsWord && (isMidWord_ || !isTold);
  return false;
}

void KeyboardGuard::release(const SeatKey& key) {
  if (seat_.keyMap().flag(key.evdev) != 0) {
    const auto change = modifierChange(key);
    // Modifiers tapped alone may stand for something, a word's undo for one, which then has its
    // place before the next key.
    if (isLone_ && decide(key, change)) return;
    if (!isLone_) reports_.event(change);
  }
  keys_.pass(key);
}

void KeyboardGuard::repeat(const SeatKey& key) {
  const auto isTyped =
      keys_.isDown(key.evdev) && !seat_.keyMap().isModifier(key.evdev, keys_.flags());
  if (isTyped) {
    if (std::exchange(repeat_, key.evdev) != key.evdev) {
      reports_.event({.kind = ReportKind::wordBroken});
    }
    reports_.changedUntold();
  }
  keys_.pass(key);
}

bool KeyboardGuard::decide(const SeatKey& key, Report report) {
  report.awaitsVerdict = true;
  if (!reports_.event(report)) return false;
  decision_ = {.number = reports_.number(), .key = key, .deadline = now_ + decisionTime};
  return true;
}

Report KeyboardGuard::modifierChange(const SeatKey& key) const {
  const auto isFn = seat_.keyMap().flag(key.evdev) == event_flags::fn;
  return {.kind = ReportKind::flagsChanged,
          .keyCode = isFn ? fnKey : virtualKeyOf(key.evdev),
          .flags = keys_.flags()};
}

bool KeyboardGuard::isConsumable(std::uint16_t keyCode, std::uint64_t flags) const {
  return std::ranges::find(consumable_, Chord{keyCode, flags & chordFlags}) != consumable_.end();
}

bool KeyboardGuard::isFlooded() const {
  return static_cast<std::size_t>(std::ranges::count_if(waiting_, [](const Item& item) {
           const auto* key = std::get_if<SeatKey>(&item);
           return key != nullptr && key->isDown;
         })) > mostWaiting;
}

}  // namespace kivra::guard
