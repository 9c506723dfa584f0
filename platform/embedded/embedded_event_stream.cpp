#include "platform/embedded/embedded_event_stream.h"

#include <utility>

namespace kivra::embedded {

struct EmbeddedEventStream::Tap : EventTapPort {
  Tap(std::uint64_t eventMask, EventTapCallback eventCallback)
      : mask(eventMask), callback(std::move(eventCallback)) {}

  std::uint64_t mask;
  EventTapCallback callback;
  bool isEnabled = false;
  bool isAttached = false;
};

struct EmbeddedEventStream::Source : RunLoopSource {
  explicit Source(std::weak_ptr<Tap> sourceTap) : tap(std::move(sourceTap)) {}

  void attach(bool attached) const {
    if (const auto port = tap.lock()) port->isAttached = attached;
  }

  std::weak_ptr<Tap> tap;
};

namespace {

Json describe(const KeyboardEvent& event) {
  if (!event.unicodeString.empty()) {
    return {{"post", "text"},
            {"text", event.unicodeString},
            {"down", event.down},
            {"marker", event.userData}};
  }
  return {{"post", "key"},
          {"code", event.keyCode},
          {"down", event.down},
          {"flags", event.flags},
          {"marker", event.userData}};
}

}  // namespace

bool EmbeddedEventStream::send(const Event& event) {
  const auto passed = passesTap(event.type, event) && monitors_.pass(event);
  if (passed && event.type == EventType::keyDown) {
    application_.keyDown(event.keyCode, event.flags, "");
  } else if (event.type == EventType::leftMouseDown || event.type == EventType::rightMouseDown) {
    application_.mouseDown();
  }
  deliverPosted();
  return passed;
}

void EmbeddedEventStream::disableTap(EventType reason) {
  const auto tap = tap_.lock();
  if (!tap || !tap->isAttached) return;
  tap->isEnabled = false;
  tap->callback(reason, Event{.type = reason});
}

bool EmbeddedEventStream::passesTap(EventType type, const Event& event) {
  const auto tap = tap_.lock();
  const auto bit = 1ULL << static_cast<std::uint32_t>(type);
  if (!tap || !tap->isEnabled || !tap->isAttached || (tap->mask & bit) == 0) return true;
  isInCallback_ = true;
  const auto verdict = tap->callback(type, event);
  isInCallback_ = false;
  return verdict == EventVerdict::pass;
}

std::shared_ptr<EventTapPort> EmbeddedEventStream::eventTapCreate(std::uint64_t mask,
                                                                  EventTapCallback callback) {
  if (refusesTaps_ || !session_.areBothPermissionsGranted()) return nullptr;
  auto tap = std::make_shared<Tap>(mask, std::move(callback));
  tap_ = tap;
  return tap;
}

std::shared_ptr<RunLoopSource> EmbeddedEventStream::createRunLoopSource(EventTapPort& port) {
  const auto tap = tap_.lock();
  return std::make_shared<Source>(tap.get() == &port ? tap : nullptr);
}

void EmbeddedEventStream::runLoopAddSource(RunLoopSource& source) {
  static_cast<Source&>(source).attach(true);
}

void EmbeddedEventStream::runLoopRemoveSource(RunLoopSource& source) {
  static_cast<Source&>(source).attach(false);
}

void EmbeddedEventStream::eventTapEnable(EventTapPort& port, bool enable) {
  static_cast<Tap&>(port).isEnabled = enable;
}

std::unique_ptr<EventSource> EmbeddedEventStream::eventSourceCreate(int /*stateId*/) {
  return std::make_unique<EventSource>();
}

std::optional<KeyboardEvent> EmbeddedEventStream::createKeyboardEvent(EventSource& /*source*/,
                                                                      std::uint16_t keyCode,
                                                                      bool down) {
  return KeyboardEvent{.keyCode = keyCode, .down = down, .unicodeString = {}};
}

void EmbeddedEventStream::eventPost(const KeyboardEvent& event) {
  effects_.report([&] { return describe(event); });
  posted_.push_back(event);
  // What is posted while the tap decides of an event comes after that event.
  if (!isInCallback_) deliverPosted();
}

void EmbeddedEventStream::deliverPosted() {
  while (!posted_.empty()) {
    const auto event = std::move(posted_.front());
    posted_.pop_front();
    deliver(event);
  }
}

void EmbeddedEventStream::deliver(const KeyboardEvent& event) {
  if (!event.down) return;
  const Event tapped{.type = EventType::keyDown,
                     .keyCode = event.keyCode,
                     .flags = event.flags,
                     .userData = event.userData};
  if (passesTap(EventType::keyDown, tapped)) {
    application_.keyDown(event.keyCode, event.flags, event.unicodeString);
  }
}

}  // namespace kivra::embedded
