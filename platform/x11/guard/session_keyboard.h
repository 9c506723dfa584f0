#pragma once

#include <X11/Xlib.h>

#include <map>
#include <string>

#include "platform/x11/guard/device_controls.h"
#include "platform/x11/guard/device_maps.h"
#include "platform/x11/guard/spare_keys.h"
#include "platform/x11/guard/xtest_keyboard.h"
#include "platform/xkb/key_map.h"

namespace kivra::x11 {

/// What the server keeps for each keyboard and the user has once: map, locks, group, controls. Kept
/// alike on XTEST's keyboard, which types, and on those that are held and float. What others set
/// for the session reaches a floating keyboard through this alone, and would be gone when it is
/// given back.
class SessionKeyboard {
 public:
  SessionKeyboard(Display* display, XtestKeyboard& xtest);
  ~SessionKeyboard();
  SessionKeyboard(const SessionKeyboard&) = delete;
  SessionKeyboard& operator=(const SessionKeyboard&) = delete;

  /// A keyboard is held from now on, or not any more.
  void add(int keyboard);
  void remove(int keyboard) { mapTexts_.erase(keyboard); }

  /// The map of a keyboard that is held may have changed by itself: some servers bind keys in it
  /// while they type.
  void readMapOf(int keyboard);

  /// The keyboard types: XTEST's keys mean what this one's mean.
  void useMapOf(int keyboard);

  /// Each spreads what the session has now.
  void spreadMap();
  void spreadState() const;
  void spreadControls();

  const KeyMap& keyMap() const { return keyMap_; }
  SpareKeys& spares() { return spares_; }

 private:
  void readMap();
  void copyState(int keyboard) const;

  Display* display_;
  XtestKeyboard& xtest_;
  DeviceMaps maps_;
  DeviceControls controls_;
  SpareKeys spares_;
  KeyMap keyMap_;
  std::string mapText_;                  // XTEST's, as it was given to it or found there
  int mapOwner_ = 0;                     // the keyboard whose map XTEST has
  std::map<int, std::string> mapTexts_;  // of the keyboards that are held
};

}  // namespace kivra::x11
