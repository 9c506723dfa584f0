#include "platform/x11/guard/xtest_keyboard.h"

#include <X11/extensions/XI2.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>

#include <algorithm>
#include <array>

namespace kivra::x11 {

XtestKeyboard::XtestKeyboard(Display* display, int device) : display_(display), device_(device) {
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
  XISetMask(bits.data(), XI_RawKeyPress);
  XISetMask(bits.data(), XI_RawKeyRelease);
  XIEventMask mask{.deviceid = device_, .mask_len = bits.size(), .mask = bits.data()};
  XISelectEvents(display_, DefaultRootWindow(display_), &mask, 1);
}

void XtestKeyboard::send(std::uint8_t code, bool isDown) {
  XTestFakeKeyEvent(display_, code, isDown ? True : False, CurrentTime);
  expected_.push_back({code, isDown});
}

bool XtestKeyboard::isForeign(std::uint8_t code, bool isDown) {
  const auto found = std::ranges::find(expected_, Sent{code, isDown});
  if (found == expected_.end()) return true;
  // The server has dropped what stands before: a key that was down, or up, already.
  expected_.erase(expected_.begin(), found + 1);
  return false;
}

}  // namespace kivra::x11
