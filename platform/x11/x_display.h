#pragma once

#include <X11/Xlib.h>

#include <memory>
#include <string>

namespace kivra::x11 {

/// The X protocol's key codes lie in [firstKeyCode, keyCodeLimit).
inline constexpr int firstKeyCode = 8;
inline constexpr int keyCodeLimit = 256;

struct CloseDisplay {
  void operator()(Display* display) const { XCloseDisplay(display); }
};
using DisplayPointer = std::unique_ptr<Display, CloseDisplay>;

/// Names what the server behind the display lacks ("XInput 2.2, XTEST"); empty when nothing. Asks
/// for XInput 2.2, XKB, XTEST and RECORD, and switches XInput 2 and XKB on for this connection.
std::string missingExtensions(Display* display);

/// The major opcode of an extension, 0 when the server has none of this name.
int extensionOpcode(Display* display, const char* name);

/// While one of these lives, errors that the server reports on this thread's displays are counted
/// instead of ending the program. Not nested across displays.
class ErrorTrap {
 public:
  explicit ErrorTrap(Display* display);
  ~ErrorTrap();
  ErrorTrap(const ErrorTrap&) = delete;
  ErrorTrap& operator=(const ErrorTrap&) = delete;

  /// Waits for the server and answers whether a request since construction failed.
  bool failed();

 private:
  Display* display_;
};

}  // namespace kivra::x11
