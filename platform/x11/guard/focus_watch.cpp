#include "platform/x11/guard/focus_watch.h"

#include <X11/Xlib-xcb.h>

#include <cstdlib>
#include <memory>

namespace kivra::x11 {

namespace {

Window focusOf(Display* display) {
  Window window = None;
  int revert = 0;
  XGetInputFocus(display, &window, &revert);
  // Without a window manager the focus may follow the pointer.
  return window == PointerRoot ? DefaultRootWindow(display) : window;
}

}  // namespace

FocusWatch::FocusWatch(Display* display)
    : display_(display), activeWindow_(XInternAtom(display, "_NET_ACTIVE_WINDOW", False)) {
  XSelectInput(display_, DefaultRootWindow(display_), PropertyChangeMask | FocusChangeMask);
  follow();
  probe();
}

void FocusWatch::notice(const XEvent& event) {
  if (event.type == PropertyNotify && event.xproperty.atom == activeWindow_) {
    // Where one window has the focus for all that is on the screen, only this tells them apart.
    hasOtherActive_ = true;
    mayHaveMoved_ = true;
    return;
  }
  if (event.type != FocusIn && event.type != FocusOut) return;
  const auto& change = event.xfocus;
  if (change.mode == NotifyGrab || change.mode == NotifyUngrab) {
    if (!isOwnCheck(change)) isHeldByOther_ = change.mode == NotifyGrab;
  } else {
    mayHaveMoved_ = true;
  }
}

bool FocusWatch::follow() {
  if (!std::exchange(mayHaveMoved_, false)) return false;
  const auto before = focus_;
  const auto root = DefaultRootWindow(display_);
  // The focus may move on before its next move is sure to be told.
  for (auto window = focusOf(display_); window != focus_; window = focusOf(display_)) {
    if (focus_ != root && focus_ != None) XSelectInput(display_, focus_, NoEventMask);
    if (window != root && window != None) XSelectInput(display_, window, FocusChangeMask);
    focus_ = window;
  }
  return std::exchange(hasOtherActive_, false) || focus_ != before;
}

void FocusWatch::checkHold() {
  if (isHeldByOther_) probe();
}

// Both requests go at once: what is typed between them comes here and to nobody else.
void FocusWatch::probe() {
  checkBegin_ = XNextRequest(display_);
  auto* const connection = XGetXCBConnection(display_);
  const auto grab =
      xcb_grab_keyboard(connection, 0, static_cast<xcb_window_t>(DefaultRootWindow(display_)),
                        XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
  const std::unique_ptr<xcb_grab_keyboard_reply_t, void (*)(void*)> reply(
      xcb_grab_keyboard_reply(connection, grab, nullptr), std::free);
  XSync(display_, False);
  checkEnd_ = XNextRequest(display_);
  isHeldByOther_ = reply && (reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED ||
                             reply->status == XCB_GRAB_STATUS_FROZEN);
}

bool FocusWatch::isOwnCheck(const XFocusChangeEvent& event) const {
  return event.serial >= checkBegin_ && event.serial < checkEnd_;
}

}  // namespace kivra::x11
