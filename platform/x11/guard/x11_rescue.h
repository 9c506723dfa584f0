#pragma once

#include "platform/guard/process/guard_process.h"
#include "platform/x11/guard/x_display.h"

namespace kivra::x11 {

/// Lets go of XTEST's keys and undoes what the keyboards' controls were changed to: the server
/// gives the keyboards of an ended guard back, but it keeps the keys down that the guard had
/// pressed.
class X11Rescue : public guard::KeyboardRescue {
 public:
  X11Rescue() : display_(openDisplay()) {}

  int fd() const override { return ConnectionNumber(display_.get()); }
  bool readEvents() override;
  void letGoOfKeys() override;

 private:
  DisplayPointer display_;
};

/// Releases every key that is down on XTEST's keyboard. The server leaves those down for the
/// applications that a hand holds on another keyboard.
void releaseXtestKeys(Display* display);

}  // namespace kivra::x11
