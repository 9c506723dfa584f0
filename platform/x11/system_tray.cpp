#include "platform/x11/system_tray.h"

#include <string>

#include "platform/x11/x_display.h"

namespace kivra::x11 {

bool hasSystemTray() {
  const DisplayPointer display(XOpenDisplay(nullptr));
  if (!display) return false;
  const auto name = "_NET_SYSTEM_TRAY_S" + std::to_string(DefaultScreen(display.get()));
  const auto selection = XInternAtom(display.get(), name.c_str(), False);
  return XGetSelectionOwner(display.get(), selection) != None;
}

}  // namespace kivra::x11
