#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <memory>

namespace kivra::x11 {

/// X key codes are Linux input event codes plus 8 and lie in [firstKeyCode, keyCodeLimit).
inline constexpr int firstKeyCode = 8;
inline constexpr int keyCodeLimit = 256;

struct CloseDisplay {
  void operator()(Display* display) const { XCloseDisplay(display); }
};
using DisplayPointer = std::unique_ptr<Display, CloseDisplay>;

/// Connects to the server of $DISPLAY, with XInput 2.2, XKB and XTEST switched on, even against
/// clients that grab the server. Errors that the server reports on any connection of the process
/// are ignored from then on: a window that vanishes between two requests must not end it. A server
/// that goes away ends it, by `_exit`. Throws std::runtime_error naming what is missing.
DisplayPointer openDisplay();

/// The major opcode of an extension, 0 when the server has none of this name.
int extensionOpcode(Display* display, const char* name);

/// The device through which XTEST types into the session: the first one's keyboard. 0 for none.
int xtestKeyboard(Display* display);

}  // namespace kivra::x11
