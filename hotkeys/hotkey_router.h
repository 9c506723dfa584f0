#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "hotkeys/model/hotkey_action.h"
#include "platform/clock.h"
#include "platform/event_tap.h"
#include "platform/events.h"
#include "settings/settings_store.h"

namespace kivra {

/// What the router asks of the rest of the program.
class HotkeyRouterDelegate {
 public:
  virtual ~HotkeyRouterDelegate() = default;

  virtual void routerDidRequestAction(const HotkeyAction& action) = 0;
  virtual void routerDidRequestManualSwitch() = 0;
  virtual void routerDidRequestUndo() = 0;
  /// True: the key ended a word and is consumed.
  virtual bool routerDidTypeKey(std::uint16_t keyCode, std::uint64_t flags) = 0;

  /// Without a key code the word is broken off. True: the boundary key is consumed.
  virtual bool routerDidReachWordBoundary(std::optional<std::uint16_t> keyCode) = 0;
};

/// Recognises hotkeys, modifier combinations, the double tap of Shift and the boundaries of words
/// in the event stream, and reports them to its delegate. A combination fires when it is let go of;
/// a double tap of Shift asks for the undo.
class HotkeyRouter {
 public:
  HotkeyRouter(SettingsStore& settings, Clock& clock) : settings_(settings), clock_(clock) {}

  void setDelegate(std::weak_ptr<HotkeyRouterDelegate> delegate) {
    delegate_ = std::move(delegate);
  }

  /// True: the event is consumed. Modifier changes and mouse buttons never are.
  bool handle(const Event& event, EventType type);

  /// The key-downs that `handle` may consume with the settings as they are.
  std::vector<KeyChord> consumableKeys() const;

 private:
  using Time = std::chrono::microseconds;

  bool handleKeyDown(const Event& event);
  bool handleHotkey(std::uint16_t keyCode, std::uint64_t flags);
  bool forwardKey(std::uint16_t keyCode, std::uint64_t flags);
  void handleModifierChange(const Event& event);
  void updateCombinations(std::uint64_t flags);
  void handleShift(std::uint64_t flags);
  void releaseShift();

  template <class Request>
  void request(Request request) {
    if (const auto delegate = delegate_.lock()) request(*delegate);
  }
  void requestAction(HotkeyAction action);
  void requestManualSwitch();
  bool typeKey(std::uint16_t keyCode, std::uint64_t flags);
  bool reachWordBoundary(std::optional<std::uint16_t> keyCode);

  SettingsStore& settings_;
  Clock& clock_;
  std::weak_ptr<HotkeyRouterDelegate> delegate_;
  std::optional<Time> lastShiftTapTime_;
  std::optional<Time> shiftDownTime_;
  bool otherKeyDuringShift_ = false;
  std::optional<HotkeyAction> pendingComboAction_;
};

}  // namespace kivra
