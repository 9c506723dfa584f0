#pragma once

#include <xcb/xcb.h>

#include "platform/x11/xcb_pointer.h"

namespace kivra::x11 {

/// Asks the active window for a sign of life: `_NET_WM_PING` of the Extended Window Manager Hints.
/// An application takes it from the same queue as its keys, so that the answer comes when it has
/// handled those that it was sent before. On a connection to the server of $DISPLAY of its own.
class WindowPing {
 public:
  WindowPing();

  /// True until the answer is there; takes it in without waiting. False as well when nothing can be
  /// asked: no window is active, it does not know the hint, or the server is gone.
  bool isPending();

 private:
  bool ask();
  void send(xcb_window_t root);
  bool isAnswer(const xcb_generic_event_t& event) const;

  XcbConnectionPointer connection_;
  xcb_client_message_event_t question_{};
  bool isPending_;
};

}  // namespace kivra::x11
