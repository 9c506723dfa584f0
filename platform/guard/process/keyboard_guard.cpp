#include "platform/guard/process/keyboard_guard.h"

#include <algorithm>
#include <utility>

#include "platform/guard/process/key_script.h"

namespace kivra::guard {

namespace {

constexpr std::uint16_t noKey = 0;

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

void KeyboardGuard::forgetProgram() {
  setEnabled(false);
  reports_.forgetNotice();
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
  waiting_.emplace_back(ReportKind::wordBroken);
  // What is left of a script would be typed somewhere else.
  breakOff();
  run();
}

void KeyboardGuard::secrecyChanged(bool isSecret) {
  if (reports_.isSecret() == isSecret) return;
  reports_.setSecret(isSecret);
  if (!isSecret) {
    add(ReportKind::wordBroken);
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
      reporter_.setConsumable(message.chords);
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
      reporter_.tellEndOfWord(std::get<ReportKind>(item));
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
    player_.start(
        message.order.number,
        writeKeyScript(message.keys, {.keyMap = seat_.keyMap(),
                                      .group = seat_.group(),
                                      .down = keys_.down(),
                                      .held = keys_.held(),
                                      .isCapsLocked = seat_.isCapsLocked(),
                                      .pauseBeforeCharacters = seat_.pauseBeforeCharacters(),
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
  if (reporter_.tell(key, !isFlooded())) {
    decision_ = {.number = reports_.number(), .key = key, .deadline = now_ + decisionTime};
  } else {
    keys_.pass(key);
  }
}

bool KeyboardGuard::isFlooded() const {
  if (waiting_.size() <= mostWaiting) return false;
  return static_cast<std::size_t>(std::ranges::count_if(waiting_, [](const Item& item) {
           const auto* key = std::get_if<SeatKey>(&item);
           return key != nullptr && key->isDown;
         })) > mostWaiting;
}

}  // namespace kivra::guard
