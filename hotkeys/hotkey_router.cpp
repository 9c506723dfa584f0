#include "hotkeys/hotkey_router.h"

#include <utility>

namespace kivra {

namespace {

using namespace std::chrono_literals;

/// The longest gap between two Shift taps that makes a double tap, exclusive.
constexpr auto doubleTapWindow = 400ms;
/// A Shift press held this long is not a tap.
constexpr auto tapHoldLimit = 500ms;

constexpr auto shortcutModifiers =
    event_flags::control | event_flags::option | event_flags::command;

}  // namespace

bool HotkeyRouter::handle(const Event& event, EventType type) {
  switch (type) {
    case EventType::leftMouseDown:
    case EventType::rightMouseDown:
      pendingComboAction_.reset();
      reachWordBoundary(std::nullopt);
      return false;
    case EventType::keyDown:
      return handleKeyDown(event);
    case EventType::flagsChanged:
      handleModifierChange(event);
      return false;
    default:
      return false;
  }
}

bool HotkeyRouter::handleKeyDown(const Event& event) {
  // An ordinary key cancels a held combination, so that ⌘⇧S never fires ⇧⌘.
  pendingComboAction_.reset();
  if ((event.flags & event_flags::shift) != 0) otherKeyDuringShift_ = true;
  if (handleHotkey(event.keyCode, event.flags)) return true;
  if ((event.flags & shortcutModifiers) != 0) {
    reachWordBoundary(std::nullopt);
    return false;
  }
  return forwardKey(event.keyCode, event.flags);
}

bool HotkeyRouter::handleHotkey(std::uint16_t keyCode, std::uint64_t flags) {
  if (settings_.manualSwitchHotkey().matches(keyCode, flags) ||
      (keyCode == key_codes::pause && settings_.pauseAsManualSwitch())) {
    requestManualSwitch();
    return true;
  }
  if (settings_.translateHotkey1().matches(keyCode, flags)) {
    requestAction(HotkeyAction::translateTo(settings_.translateHotkey1Lang()));
    return true;
  }
  if (settings_.translateHotkey2().matches(keyCode, flags)) {
    requestAction(HotkeyAction::translateTo(settings_.translateHotkey2Lang()));
    return true;
  }
  if (settings_.correctHotkey().matches(keyCode, flags)) {
    requestAction(HotkeyAction::correct());
    return true;
  }
  return false;
}

bool HotkeyRouter::forwardKey(std::uint16_t keyCode, std::uint64_t flags) {
  switch (keyCode) {
    case key_codes::returnKey:
    case key_codes::tab:
    case key_codes::space:
    case key_codes::keypadEnter:
      return reachWordBoundary(keyCode);
    case key_codes::escape:
    case key_codes::leftArrow:
    case key_codes::rightArrow:
    case key_codes::downArrow:
    case key_codes::upArrow:
      reachWordBoundary(std::nullopt);
      return false;
    default:
      return typeKey(keyCode, flags);
  }
}

void HotkeyRouter::handleModifierChange(const Event& event) {
  updateCombinations(event.flags);
  if (event.keyCode == key_codes::leftShift || event.keyCode == key_codes::rightShift) {
    handleShift(event.flags);
  }
}

void HotkeyRouter::updateCombinations(std::uint64_t flags) {
  const auto translateHeld = settings_.translateCombo().isHeld(flags);
  const auto correctHeld = settings_.correctCombo().isHeld(flags);
  if (translateHeld) {
    pendingComboAction_ = HotkeyAction::translateTo(settings_.ctrlFnTargetLang());
  } else if (correctHeld) {
    pendingComboAction_ = HotkeyAction::correct();
  } else if (pendingComboAction_) {
    requestAction(*std::exchange(pendingComboAction_, std::nullopt));
  }
  const auto comboWithShift = (translateHeld || correctHeld) && (flags & event_flags::shift) != 0;
  if (comboWithShift || (flags & event_flags::fn) != 0) {
    otherKeyDuringShift_ = true;
    lastShiftTapTime_.reset();
  }
}

void HotkeyRouter::handleShift(std::uint64_t flags) {
  if ((flags & event_flags::shift) != 0) {
    shiftDownTime_ = clock_.now();
    otherKeyDuringShift_ = false;
    return;
  }
  releaseShift();
  shiftDownTime_.reset();
}

void HotkeyRouter::releaseShift() {
  const auto now = clock_.now();
  const auto isTap =
      shiftDownTime_ && !otherKeyDuringShift_ && now - *shiftDownTime_ < tapHoldLimit;
  if (!isTap) {
    lastShiftTapTime_.reset();
  } else if (lastShiftTapTime_ && now - *lastShiftTapTime_ < doubleTapWindow) {
    lastShiftTapTime_.reset();
    request([](auto& delegate) { delegate.routerDidRequestUndo(); });
  } else {
    lastShiftTapTime_ = now;
  }
}

void HotkeyRouter::requestAction(HotkeyAction action) {
  request([&](auto& delegate) { delegate.routerDidRequestAction(action); });
}

void HotkeyRouter::requestManualSwitch() {
  request([](auto& delegate) { delegate.routerDidRequestManualSwitch(); });
}

bool HotkeyRouter::typeKey(std::uint16_t keyCode, std::uint64_t flags) {
  const auto delegate = delegate_.lock();
  return delegate && delegate->routerDidTypeKey(keyCode, flags);
}

bool HotkeyRouter::reachWordBoundary(std::optional<std::uint16_t> keyCode) {
  const auto delegate = delegate_.lock();
  return delegate && delegate->routerDidReachWordBoundary(keyCode);
}

std::vector<KeyChord> HotkeyRouter::consumableKeys() const {
  std::vector<KeyChord> keys;
  for (const auto boundary :
       {key_codes::returnKey, key_codes::tab, key_codes::space, key_codes::keypadEnter}) {
    keys.push_back({boundary, 0});
    keys.push_back({boundary, event_flags::shift});
  }
  for (const auto& hotkey : {settings_.manualSwitchHotkey(), settings_.translateHotkey1(),
                             settings_.translateHotkey2(), settings_.correctHotkey()}) {
    keys.push_back({hotkey.keyCode, hotkey.modifiers & hotkeyModifiers});
  }
  if (settings_.pauseAsManualSwitch()) {
    // Every subset of the hotkey modifiers.
    for (std::uint64_t flags = hotkeyModifiers;; flags = (flags - 1) & hotkeyModifiers) {
      keys.push_back({key_codes::pause, flags});
      if (flags == 0) break;
    }
  }
  return keys;
}

}  // namespace kivra
