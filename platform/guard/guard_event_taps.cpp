#include "platform/guard/guard_event_taps.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/events.h"

namespace kivra::guard {

namespace {

using namespace std::chrono_literals;

EventType eventType(ReportKind kind) {
  switch (kind) {
    case ReportKind::flagsChanged:
      return EventType::flagsChanged;
    case ReportKind::rightMouseDown:
      return EventType::rightMouseDown;
    // Like a click, it ends the word that was being typed.
    case ReportKind::wordBroken:
    case ReportKind::leftMouseDown:
      return EventType::leftMouseDown;
    case ReportKind::timedOut:
      return EventType::tapDisabledByTimeout;
    default:
      return EventType::keyDown;
  }
}

bool isNotice(EventType type) {
  return type == EventType::tapDisabledByTimeout || type == EventType::tapDisabledByUserInput;
}

bool isDelete(const PostedKey& key) {
  return key.kind == PostedKey::Kind::key && key.keyCode == key_codes::deleteKey;
}

}  // namespace

struct GuardEventTaps::Tap : EventTapPort {
  Tap(std::uint64_t eventMask, EventTapCallback eventCallback)
      : mask(eventMask), callback(std::move(eventCallback)) {}

  std::uint64_t mask;
  EventTapCallback callback;
};

struct GuardEventTaps::Source : RunLoopSource {};

GuardEventTaps::GuardEventTaps(Environment environment)
    : environment_(std::move(environment)), self_(std::make_shared<GuardEventTaps*>(this)) {
  environment_.posted.setWake([this] {
    if (!isInCallback_) later(0us, &GuardEventTaps::flushPosted);
  });
}

GuardEventTaps::~GuardEventTaps() { environment_.posted.setWake(nullptr); }

std::shared_ptr<EventTapPort> GuardEventTaps::eventTapCreate(std::uint64_t mask,
                                                             EventTapCallback callback) {
  attach(false);
  starts_ = {};
  if (!environment_.guard.start()) return nullptr;
  isEnabled_ = false;
  auto tap = std::make_shared<Tap>(mask, std::move(callback));
  tap_ = tap;
  configureGuard();
  return tap;
}

std::shared_ptr<RunLoopSource> GuardEventTaps::createRunLoopSource(EventTapPort& /*port*/) {
  return std::make_shared<Source>();
}

void GuardEventTaps::runLoopAddSource(RunLoopSource& /*source*/) { attach(true); }

void GuardEventTaps::runLoopRemoveSource(RunLoopSource& /*source*/) { attach(false); }

void GuardEventTaps::eventTapEnable(EventTapPort& /*port*/, bool enable) {
  isEnabled_ = enable;
  environment_.guard.send({.kind = enable ? OrderKind::enable : OrderKind::disable});
  flushLater();
}

void GuardEventTaps::setConsumableKeys(const std::vector<KeyChord>& keys) {
  std::vector<Chord> chords;
  chords.reserve(keys.size());
  for (const auto& key : keys) chords.push_back({key.keyCode, key.flags});
  if (chords == chords_) return;
  chords_ = std::move(chords);
  environment_.guard.send({.kind = OrderKind::setConsumable}, chords_);
  flushLater();
}

void GuardEventTaps::attach(bool attached) {
  watch_.reset();
  auto& guard = environment_.guard;
  if (!attached) return;
  if (guard.fd() >= 0) {
    watch_ = environment_.watchFd(guard.fd(), [this] { readReports(); });
  } else if (guard.isAwaiting()) {
    watch_ = environment_.watchFd(guard.doorFd(), [this] { meetGuard(); });
  }
}

void GuardEventTaps::meetGuard() {
  if (!environment_.guard.meet()) return;
  configureGuard();
  attach(true);
}

void GuardEventTaps::configureGuard() {
  environment_.guard.send({.kind = OrderKind::setConsumable}, chords_);
  if (isEnabled_) environment_.guard.send({.kind = OrderKind::enable});
  flushLater();
}

void GuardEventTaps::later(std::chrono::microseconds delay, void (GuardEventTaps::*called)()) {
  environment_.runLoop.asyncAfter(delay, [weak = std::weak_ptr(self_), called] {
    if (const auto self = weak.lock()) ((*self)->*called)();
  });
}

void GuardEventTaps::flushLater() {
  if (!environment_.guard.hasBacklog() || std::exchange(isFlushing_, true)) return;
  // Nobody tells when a socket can be written; one that is full for longer has a guard that is
  // about to be ended.
  later(5ms, &GuardEventTaps::flush);
}

void GuardEventTaps::flush() {
  isFlushing_ = false;
  environment_.guard.flush();
  flushLater();
}

void GuardEventTaps::readReports() {
  // A run loop that is turned inside a callback must not enter it again.
  if (isInCallback_) return;
  while (const auto report = environment_.guard.receive()) handle(*report);
  if (watch_ && environment_.guard.isGone()) replaceGuard();
}

void GuardEventTaps::handle(const Report& report) {
  if (report.kind == ReportKind::keyDown) {
    starts_.served();
    noticeClick(report);
  }
  if (!handleNotice(report)) handleEvent(report);
}

// Applications answer a key within a moment; a caret that moves later was moved by something else.
void GuardEventTaps::noticeClick(const Report& key) {
  constexpr auto answerTime = 200ms;
  if (!environment_.lastCaretMove) return;
  const auto isClick = environment_.lastCaretMove() > lastKey_ + answerTime;
  lastKey_ = std::chrono::steady_clock::now();
  if (isClick) callTap({.kind = ReportKind::wordBroken, .group = key.group});
}

bool GuardEventTaps::handleNotice(const Report& report) {
  switch (report.kind) {
    case ReportKind::ready:
      return true;
    case ReportKind::unavailable:  // the guard itself has said why
      starts_.refused();
      return true;
    case ReportKind::refused:
      environment_.postRefused();
      return true;
    case ReportKind::timedOut:
      environment_.postRefused();
      return false;
    case ReportKind::noKeyboard:
      environment_.log.log(
          "Kivra: у X-сервера нет клавиатуры, которую можно перехватить; слова не исправляются");
      return true;
    case ReportKind::keyboardBusy:
      environment_.log.log(
          "Kivra: клавиатуру удерживает другая программа; пробуем снова, пока не отпустит");
      return true;
    default:
      return false;
  }
}

void GuardEventTaps::handleEvent(const Report& report) {
  // What was posted before this event does not belong to it.
  flushPosted();
  const auto verdict = callTap(report);
  auto keys = environment_.posted.take();
  if (report.awaitsVerdict) {
    sendKeys({.kind = OrderKind::verdict,
              .drop = verdict == EventVerdict::drop,
              .number = report.number},
             std::move(keys));
  } else if (!keys.empty()) {
    sendKeys({.kind = OrderKind::post, .number = report.number}, std::move(keys));
  }
}

EventVerdict GuardEventTaps::callTap(const Report& report) {
  const auto tap = tap_.lock();
  const auto type = eventType(report.kind);
  if (!tap) return EventVerdict::pass;
  if (!isNotice(type) && (tap->mask & 1ULL << static_cast<std::uint32_t>(type)) == 0) {
    return EventVerdict::pass;
  }
  const Event event{.type = type, .keyCode = report.keyCode, .flags = report.flags, .userData = 0};
  if (environment_.isTakenByOwnWindow(event)) return EventVerdict::pass;
  isInCallback_ = true;
  environment_.groupMet(report.group);
  const auto verdict = tap->callback(type, event);
  environment_.groupMet(std::nullopt);
  isInCallback_ = false;
  return verdict;
}

void GuardEventTaps::flushPosted() {
  auto keys = environment_.posted.take();
  if (!keys.empty()) sendKeys({.kind = OrderKind::post}, std::move(keys));
}

void GuardEventTaps::prepareErasing(std::vector<PostedKey>& keys) const {
  const auto end = std::ranges::find_if_not(keys, isDelete);
  const auto presses = std::count_if(keys.begin(), end, [](const auto& key) { return key.down; });
  if (presses == 0) return;
  const auto pause = environment_.pauseAfterErasing();
  if (pause > 0ms && end != keys.end()) {
    keys.insert(
        end, {.kind = PostedKey::Kind::pause, .value = static_cast<std::uint32_t>(pause.count())});
  }
  // A selection can only be what the application has completed the word with: to select anything
  // oneself ends the word. It would take the first Delete for itself.
  if (!environment_.hasSelectionBehind(static_cast<std::size_t>(presses))) return;
  std::array tap = {keys[0], keys[0]};
  tap[1].down = false;
  keys.insert(keys.begin(), tap.begin(), tap.end());
}

void GuardEventTaps::sendKeys(const Order& order, std::vector<PostedKey> keys) {
  prepareErasing(keys);
  environment_.guard.send(order, keys);
  flushLater();
  for (const auto& key : keys) {
    if (key.kind == PostedKey::Kind::selectGroup) environment_.groupSelected(key.value);
  }
}

void GuardEventTaps::replaceGuard() {
  watch_.reset();
  // What it had not typed yet nobody will.
  environment_.postRefused();
  const auto isForeign = environment_.guard.isForeignBuild();
  environment_.guard.stop();
  if (isForeign) {
    environment_.log.log("Kivra: сторож клавиатуры другой версии; перезапустите Kivra");
  } else if (environment_.guard.isAwaiting()) {
    environment_.log.log("Kivra: сторож клавиатуры завершился, жду следующего");
  } else if (const auto delay = starts_.next()) {
    environment_.log.log("Kivra: сторож клавиатуры завершился, запускаю нового");
    later(*delay, &GuardEventTaps::startAnew);
  } else {
    environment_.log.log("Kivra: сторож клавиатуры не запускается, перехвата нет");
  }
  if (environment_.guard.isAwaiting()) attach(true);
}

void GuardEventTaps::startAnew() {
  // The tap may have been given up, or made anew, in the meantime.
  if (tap_.expired() || environment_.guard.fd() >= 0) return;
  if (!environment_.guard.start()) {
    replaceGuard();
    return;
  }
  configureGuard();
  attach(true);
}

}  // namespace kivra::guard
