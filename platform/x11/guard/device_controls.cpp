#include "platform/x11/guard/device_controls.h"

#include <X11/XKBlib.h>

namespace kivra::x11 {

void DeviceControls::giveTo(int keyboard) const {
  give(keyboard, XkbStickyKeysMask | XkbMouseKeysMask | XkbMouseKeysAccelMask);
}

void DeviceControls::giveToXtest(int keyboard) const {
  give(keyboard, XkbSlowKeysMask | XkbBounceKeysMask);
}

void DeviceControls::giveBack(int device) const { give(device, 0); }

void DeviceControls::give(int device, unsigned int without) const {
  XkbDescPtr const session = XkbGetMap(display_, 0, XkbUseCoreKbd);
  if (session == nullptr) return;
  if (XkbGetControls(display_, XkbAllControlsMask, session) == Success) {
    session->device_spec = static_cast<unsigned short>(device);
    session->ctrls->enabled_ctrls &= ~without;
    XkbSetControls(display_,
                   XkbControlsEnabledMask | XkbRepeatKeysMask | XkbPerKeyRepeatMask |
                       XkbSlowKeysMask | XkbBounceKeysMask,
                   session);
  }
  XkbFreeKeyboard(session, XkbAllComponentsMask, True);
}

}  // namespace kivra::x11
