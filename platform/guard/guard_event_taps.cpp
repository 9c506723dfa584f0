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
    if (isInCallback_) return;
    environment_.runLoop.asyncAfter(0us, [weak = std::weak_ptr(self_)] {
      if (const auto self = weak.lock()) (*self)->flushPosted();
    });
  });
}

GuardEventTaps::~GuardEventTaps() { environment_.posted.setWake(nullptr); }

std::shared_ptr<EventTapPort> GuardEventTaps::eventTapCreate(std::uint64_t mask,
                                                             EventTapCallback callback) {
  attach(false);
  isReady_ = false;
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
}

void GuardEventTaps::setConsumableKeys(const std::vector<KeyChord>& keys) {
  std::vector<Chord> chords;
  chords.reserve(keys.size());
  for (const auto& key : keys) chords.push_back({key.keyCode, key.flags});
  if (chords == chords_) return;
  chords_ = std::move(chords);
  environment_.guard.send({.kind = OrderKind::setConsumable}, chords_);
}

void GuardEventTaps::attach(bool attached) {
  watch_.reset();
  if (!attached || environment_.guard.fd() < 0) return;
  watch_ = environment_.watchFd(environment_.guard.fd(), [this] { readReports(); });
}

void GuardEventTaps::configureGuard() {
  environment_.guard.send({.kind = OrderKind::setConsumable}, chords_);
  if (isEnabled_) environment_.guard.send({.kind = OrderKind::enable});
}

void GuardEventTaps::readReports() {
  // A run loop that is turned inside a callback must not enter it again.
  if (isInCallback_) return;
  while (const auto report = environment_.guard.receive()) handle(*report);
  if (watch_ && environment_.guard.isGone()) replaceGuard();
}

void GuardEventTaps::handle(const Report& report) {
  if (!handleNotice(report)) handleEvent(report);
}

bool GuardEventTaps::handleNotice(const Report& report) {
  switch (report.kind) {
    case ReportKind::ready:
      isReady_ = true;
      return true;
    case ReportKind::unavailable:  // the guard itself has said why
      return true;
    case ReportKind::refused:
      environment_.postRefused();
      return true;
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
  // What was posted before this event does not belong to it.
  flushPosted();
  isInCallback_ = true;
  environment_.group.ofEvent = report.group;
  const auto verdict = tap->callback(type, event);
  environment_.group.ofEvent.reset();
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
  for (const auto& key : keys) {
    if (key.kind == PostedKey::Kind::selectGroup) environment_.groupSelected(key.value);
  }
}

void GuardEventTaps::replaceGuard() {
  watch_.reset();
  const auto* const reason = environment_.guard.isForeignBuild()
                                 ? "Kivra: сторож клавиатуры другой версии; перезапустите Kivra"
                                 : "Kivra: сторож клавиатуры не запускается, перехвата нет";
  // One that has never been ready would not be the next time either.
  if (!std::exchange(isReady_, false) || !environment_.guard.start()) {
    environment_.guard.stop();
    environment_.log.log(reason);
    return;
  }
  environment_.log.log("Kivra: сторож клавиатуры завершился, запускаю нового");
  configureGuard();
  attach(true);
}

}  // namespace kivra::guard
