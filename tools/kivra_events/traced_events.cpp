#include "traced_events.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string_view>
#include <utility>

namespace kivra::events {

namespace {

struct FlagName {
  std::uint64_t flag = 0;
  std::string_view name;
};

constexpr std::array flagNames = {
    FlagName{event_flags::shift, "shift"}, FlagName{event_flags::control, "control"},
    FlagName{event_flags::option, "option"}, FlagName{event_flags::command, "command"},
    FlagName{event_flags::fn, "fn"}};

constexpr std::uint64_t chordFlags =
    event_flags::shift | event_flags::control | event_flags::option | event_flags::command;

std::string flagsText(std::uint64_t flags) {
  std::string text;
  for (const auto& [flag, name] : flagNames) {
    if ((flags & flag) == 0) continue;
    if (!text.empty()) text += '+';
    text += name;
  }
  return text.empty() ? "-" : text;
}

std::string_view typeName(EventType type) {
  switch (type) {
    case EventType::leftMouseDown:
      return "leftMouseDown";
    case EventType::rightMouseDown:
      return "rightMouseDown";
    case EventType::keyDown:
      return "keyDown";
    case EventType::flagsChanged:
      return "flagsChanged";
    case EventType::tapDisabledByTimeout:
      return "tapDisabledByTimeout";
    case EventType::tapDisabledByUserInput:
      return "tapDisabledByUserInput";
  }
  return "unknown";
}

bool isNotice(EventType type) {
  return type == EventType::tapDisabledByTimeout || type == EventType::tapDisabledByUserInput;
}

bool isOfKey(EventType type) {
  return type == EventType::keyDown || type == EventType::flagsChanged;
}

std::string keyText(std::uint16_t keyCode, std::uint64_t flags) {
  return " key=" + std::to_string(keyCode) + " flags=" + flagsText(flags);
}

}  // namespace

std::shared_ptr<EventTapPort> TracedEventTaps::eventTapCreate(std::uint64_t mask,
                                                              EventTapCallback callback) {
  auto port = taps_.eventTapCreate(
      mask, [this, called = std::move(callback)](EventType type, const Event& event) {
        return call(called, type, event);
      });
  print_(port ? "tap created" : "tap refused");
  return port;
}

std::shared_ptr<RunLoopSource> TracedEventTaps::createRunLoopSource(EventTapPort& port) {
  return taps_.createRunLoopSource(port);
}

void TracedEventTaps::runLoopAddSource(RunLoopSource& source) { taps_.runLoopAddSource(source); }

void TracedEventTaps::runLoopRemoveSource(RunLoopSource& source) {
  taps_.runLoopRemoveSource(source);
}

void TracedEventTaps::eventTapEnable(EventTapPort& port, bool enable) {
  taps_.eventTapEnable(port, enable);
  print_(enable ? "tap on" : "tap off");
}

void TracedEventTaps::setConsumableKeys(const std::vector<KeyChord>& keys) {
  consumable_ = keys;
  taps_.setConsumableKeys(keys);
}

EventVerdict TracedEventTaps::call(const EventTapCallback& callback, EventType type,
                                   const Event& event) const {
  if (isNotice(type)) {
    print_(std::string(typeName(type)));
    return callback(type, event);
  }
  // What the key met; the callback may select another.
  const auto met = layout();
  const auto isHeldKey = isHeld(type, event);
  const auto isSecret = workspace_.isSecureEventInputEnabled();
  const auto start = std::chrono::steady_clock::now();
  const auto verdict = callback(type, event);
  const auto taken = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - start);
  std::string line(typeName(type));
  if (isOfKey(type)) line += isSecret ? " key=hidden" : keyText(event.keyCode, event.flags);
  line += " layout=" + met;
  line += event.userData == 0 ? " foreign" : " own";
  line += isHeldKey ? " held" : " passed";
  line += verdict == EventVerdict::drop ? " verdict=drop " : " verdict=pass ";
  print_(line + std::to_string(taken.count()) + "us");
  return verdict;
}

bool TracedEventTaps::isHeld(EventType type, const Event& event) const {
  const KeyChord chord{event.keyCode, event.flags & chordFlags};
  return type == EventType::keyDown && std::ranges::find(consumable_, chord) != consumable_.end();
}

std::string TracedEventTaps::layout() const {
  const auto source = sources_.copyCurrentKeyboardInputSource();
  return source ? source->id : "?";
}

std::unique_ptr<EventSource> TracedEventPosting::eventSourceCreate(int stateId) {
  return posting_.eventSourceCreate(stateId);
}

std::optional<KeyboardEvent> TracedEventPosting::createKeyboardEvent(EventSource& source,
                                                                     std::uint16_t keyCode,
                                                                     bool down) {
  return posting_.createKeyboardEvent(source, keyCode, down);
}

void TracedEventPosting::eventPost(const KeyboardEvent& event) {
  posting_.eventPost(event);
  auto line = "  posted " + std::string(event.down ? "down" : "up");
  line += keyText(event.keyCode, event.flags);
  if (!event.unicodeString.empty()) {
    line += " text of " + std::to_string(event.unicodeString.size()) + " bytes";
  }
  print_(line);
}

void TracedEventPosting::onRefusal(const std::function<void()>& called) {
  posting_.onRefusal([print = print_, called] {
    print("  refused: what was posted last has not been typed");
    called();
  });
}

}  // namespace kivra::events
