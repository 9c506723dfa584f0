#pragma once

#include <X11/Xlib.h>

#include <utility>

namespace kivra::x11 {

/// Where the keyboard's focus is, and whether another client holds the keyboard: a lock screen, a
/// menu, a window manager's shortcut.
class FocusWatch {
 public:
  explicit FocusWatch(Display* display);

  /// Takes an event in; asks the server nothing.
  void notice(const XEvent& event);

  /// Follows the focus where it has moved. Answers whether it has, or another window is active.
  bool follow();

  /// Nobody has the focus, or another client holds the keyboard.
  bool isSecret() const { return isHeldByOther_ || focus_ == None; }

  /// Asks the server whether the keyboard is still held: the news may have gone to a window that is
  /// not there any more.
  void checkHold();

 private:
  void probe();
  bool isOwnCheck(const XFocusChangeEvent& event) const;

  Display* display_;
  Atom activeWindow_;
  Window focus_ = None;
  bool isHeldByOther_ = false;
  bool mayHaveMoved_ = true;
  bool hasOtherActive_ = false;
  unsigned long checkBegin_ = 0;  // requests
  unsigned long checkEnd_ = 0;
};

}  // namespace kivra::x11
