#include "platform/x11/guard/x11_rescue.h"

#include <X11/extensions/XTest.h>

#include "platform/x11/guard/device_keys.h"

namespace kivra::x11 {

bool X11Rescue::readEvents() {
  // Nothing is selected, but the server tells every client of changed keyboard maps. A server that
  // is gone ends the process in here.
  while (XPending(display_.get()) > 0) {
    XEvent event;
    XNextEvent(display_.get(), &event);
  }
  return true;
}

void X11Rescue::letGoOfKeys() { releaseXtestKeys(display_.get()); }

void releaseXtestKeys(Display* display) {
  const auto keys = keysDown(display, xtestKeyboard(display));
  for (unsigned int code = firstKeyCode; code < keyCodeLimit; ++code) {
    if (keys.test(code)) XTestFakeKeyEvent(display, code, False, CurrentTime);
  }
  XSync(display, False);
}

}  // namespace kivra::x11
