#include "platform/guard/process/key_reporter.h"

#include <algorithm>

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

bool KeyReporter::tell(const SeatKey& key, bool mayConsume) {
  if (key.isRepeat) {
    repeat(key);
    return false;
  }
  return key.isDown ? press(key, mayConsume) : release(key);
}

void KeyReporter::tellEndOfWord(ReportKind kind) {
  reports_.event({.kind = kind, .flags = keys_.flags()});
  reports_.changedAt(reports_.number());
  isMidWord_ = false;
}

bool KeyReporter::press(const SeatKey& key, bool mayConsume) {
  repeat_ = 0;
  isLone_ = seat_.keyMap().isModifier(key.evdev, keys_.flags());
  if (isLone_) {
    reports_.event(modifierChange(key));
  } else if (!keys_.isDown(key.evdev)) {
    if (pressTyping(virtualKeyOf(key.evdev), mayConsume)) return true;
    reports_.changedAt(reports_.number());
  }
  return false;
}

bool KeyReporter::pressTyping(std::uint16_t keyCode, bool mayConsume) {
  Report down{.kind = ReportKind::keyDown, .keyCode = keyCode, .flags = keys_.flags()};
  const auto endsWord = isConsumable(keyCode, down.flags);
  if (endsWord && reports_.isOn() && mayConsume) {
    isMidWord_ = false;
    if (ask(down)) return true;
  }
  // What ends the word unasked, and the rest of a word whose beginning is not known, is not the
  // program's to mend: it would mend a part.
  if (endsWord || isMidWord_) down.keyCode = unknownKey;
  const auto isTold = reports_.event(down);
  isMidWord_ = !endsWord && (isMidWord_ || !isTold);
  return false;
}

bool KeyReporter::release(const SeatKey& key) {
  if (seat_.keyMap().flag(key.evdev) == 0) return false;
  const auto change = modifierChange(key);
  // Modifiers tapped alone may stand for something, a word's undo for one, which then has its place
  // before the next key.
  if (isLone_) return ask(change);
  reports_.event(change);
  return false;
}

void KeyReporter::repeat(const SeatKey& key) {
  if (!keys_.isDown(key.evdev) || seat_.keyMap().isModifier(key.evdev, keys_.flags())) return;
  if (std::exchange(repeat_, key.evdev) != key.evdev) {
    reports_.event({.kind = ReportKind::wordBroken});
  }
  reports_.changedUntold();
}

bool KeyReporter::ask(Report report) {
  report.awaitsVerdict = true;
  return reports_.event(report);
}

Report KeyReporter::modifierChange(const SeatKey& key) const {
  const auto isFn = seat_.keyMap().flag(key.evdev) == event_flags::fn;
  return {.kind = ReportKind::flagsChanged,
          .keyCode = isFn ? fnKey : virtualKeyOf(key.evdev),
          .flags = keys_.flags()};
}

bool KeyReporter::isConsumable(std::uint16_t keyCode, std::uint64_t flags) const {
  return std::ranges::find(consumable_, Chord{keyCode, flags & chordFlags}) != consumable_.end();
}

}  // namespace kivra::guard
