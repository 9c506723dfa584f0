#include "platform/x11/x11_event_taps.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "platform/events.h"

namespace kivra::x11 {

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

}  // namespace

struct X11EventTaps::Tap : EventTapPort {
  Tap(std::uint64_t eventMask, EventTapCallback eventCallback)
      : mask(eventMask), callback(std::move(eventCallback)) {}

  std::uint64_t mask;
  EventTapCallback callback;
};

struct X11EventTaps::Source : RunLoopSource {};

X11EventTaps::X11EventTaps(Environment environment)
    : environment_(std::move(environment)),
      watchdog_({.runLoop = environment_.runLoop,
                 .readReports = [this] { readReports(); },
                 .ping = [this] { environment_.guard.send({.kind = OrderKind::ping}); },
                 .isStopped = [this] { return environment_.guard.isStopped(); },
                 .bite = [this] { replaceSilentGuard(); },
                 .atNextKey = environment_.atNextKey}),
      self_(std::make_shared<X11EventTaps*>(this)) {
  environment_.posted.setWake([this] {
    if (isInCallback_) return;
    environment_.runLoop.asyncAfter(0us, [weak = std::weak_ptr(self_)] {
      if (const auto self = weak.lock()) (*self)->flushPosted();
    });
  });
}

X11EventTaps::~X11EventTaps() { environment_.posted.setWake(nullptr); }

std::shared_ptr<EventTapPort> X11EventTaps::eventTapCreate(std::uint64_t mask,
                                                           EventTapCallback callback) {
  attach(false);
  if (!environment_.guard.start()) return nullptr;
  isEnabled_ = false;
  auto tap = std::make_shared<Tap>(mask, std::move(callback));
  tap_ = tap;
  configureGuard();
  return tap;
}

std::shared_ptr<RunLoopSource> X11EventTaps::createRunLoopSource(EventTapPort& /*port*/) {
  return std::make_shared<Source>();
}

void X11EventTaps::runLoopAddSource(RunLoopSource& /*source*/) { attach(true); }

void X11EventTaps::runLoopRemoveSource(RunLoopSource& /*source*/) { attach(false); }

void X11EventTaps::eventTapEnable(EventTapPort& /*port*/, bool enable) {
  isEnabled_ = enable;
  environment_.guard.send({.kind = enable ? OrderKind::enable : OrderKind::disable});
}

void X11EventTaps::setConsumableKeys(const std::vector<KeyChord>& keys) {
  std::vector<Chord> chords;
  chords.reserve(keys.size());
  for (const auto& key : keys) chords.push_back({key.keyCode, key.flags});
  if (chords == chords_) return;
  chords_ = std::move(chords);
  environment_.guard.send({.kind = OrderKind::setConsumable}, chords_);
}

void X11EventTaps::attach(bool attached) {
  watch_.reset();
  watchdog_.stop();
  if (!attached || environment_.guard.fd() < 0) return;
  watch_ = environment_.watchFd(environment_.guard.fd(), [this] { readReports(); });
  watchdog_.start();
}

void X11EventTaps::configureGuard() {
  environment_.guard.send({.kind = OrderKind::setConsumable}, chords_);
  if (isEnabled_) environment_.guard.send({.kind = OrderKind::enable});
}

void X11EventTaps::readReports() {
  // A run loop that is turned inside a callback must not enter it again.
  if (isInCallback_) return;
  while (const auto report = environment_.guard.receive()) take(*report);
  if (watch_ && environment_.guard.isGone()) replaceGuard();
}

void X11EventTaps::take(const Report& report) {
  watchdog_.heard(report.kind == ReportKind::pong);
  if (report.kind == ReportKind::pong || report.kind == ReportKind::ready) return;
  if (report.kind == ReportKind::keyTaken) {
    environment_.log.log("Kivra: клавиша " + std::to_string(report.keyCode) +
                         " занята другой программой и не перехватывается");
    return;
  }
  const auto verdict = call(report);
  auto keys = environment_.posted.take();
  if (report.awaitsVerdict) {
    hand({.kind = OrderKind::verdict,
          .drop = verdict == EventVerdict::drop,
          .number = report.number},
         std::move(keys));
  } else if (!keys.empty()) {
    hand({.kind = OrderKind::post, .number = report.number}, std::move(keys));
  }
}

EventVerdict X11EventTaps::call(const Report& report) {
  const auto tap = tap_.lock();
  const auto type = eventType(report.kind);
  if (!tap) return EventVerdict::pass;
  if (!isNotice(type) && (tap->mask & 1ULL << static_cast<std::uint32_t>(type)) == 0) {
    return EventVerdict::pass;
  }
  // What was posted before this event does not belong to it; a frozen keyboard takes one script.
  if (!report.awaitsVerdict) flushPosted();
  isInCallback_ = true;
  environment_.group.ofEvent = report.group;
  const auto verdict = tap->callback(type, {.type = type,
                                            .keyCode = report.keyCode,
                                            .flags = report.flags,
                                            .userData = report.userData});
  environment_.group.ofEvent.reset();
  isInCallback_ = false;
  return verdict;
}

void X11EventTaps::flushPosted() {
  auto keys = environment_.posted.take();
  if (!keys.empty()) hand({.kind = OrderKind::post}, std::move(keys));
}

void X11EventTaps::deleteCompletion(std::vector<PostedKey>& keys) const {
  const auto isDelete = [](const PostedKey& key) {
    return key.kind == PostedKey::Kind::key && key.keyCode == key_codes::deleteKey;
  };
  const auto end = std::ranges::find_if_not(keys, isDelete);
  const auto presses = std::count_if(keys.begin(), end, [](const auto& key) { return key.down; });
  if (presses == 0 || !environment_.hasSelectionBehind(static_cast<std::size_t>(presses))) return;
  std::array tap = {keys[0], keys[0]};
  tap[1].down = false;
  keys.insert(keys.begin(), tap.begin(), tap.end());
}

void X11EventTaps::hand(const Order& order, std::vector<PostedKey> keys) {
  // A selection can only be what the application has completed the word with: to select anything
  // oneself ends the word. It would take the first Delete for itself.
  deleteCompletion(keys);
  environment_.guard.send(order, keys);
  for (const auto& key : keys) {
    if (key.kind == PostedKey::Kind::selectGroup) environment_.groupSelected(key.value);
  }
}

void X11EventTaps::replaceSilentGuard() {
  environment_.log.log("Kivra: сторож клавиатуры не отвечает, запускаю нового");
  replaceGuard();
}

void X11EventTaps::replaceGuard() {
  watch_.reset();
  if (!environment_.guard.start()) {
    environment_.log.log("Kivra: сторож клавиатуры не запускается, перехвата нет");
    watchdog_.stop();
    return;
  }
  configureGuard();
  attach(true);
}

}  // namespace kivra::x11
