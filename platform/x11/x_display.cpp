#include "platform/x11/x_display.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/record.h>

namespace kivra::x11 {

namespace {

// Xlib's error handler is one per process and has no closure.
int errorCount = 0;

int countError(Display* /*display*/, XErrorEvent* /*event*/) {
  ++errorCount;
  return 0;
}

bool hasXInput(Display* display) {
  int major = 2;
  int minor = 2;
  if (extensionOpcode(display, "XInputExtension") == 0) return false;
  if (XIQueryVersion(display, &major, &minor) != Success) return false;
  return major > 2 || (major == 2 && minor >= 2);
}

bool hasXkb(Display* display) {
  int opcode = 0;
  int event = 0;
  int error = 0;
  int major = XkbMajorVersion;
  int minor = XkbMinorVersion;
  return XkbQueryExtension(display, &opcode, &event, &error, &major, &minor) != 0;
}

bool hasXTest(Display* display) {
  int event = 0;
  int error = 0;
  int major = 0;
  int minor = 0;
  return XTestQueryExtension(display, &event, &error, &major, &minor) != 0;
}

bool hasRecord(Display* display) {
  int major = 0;
  int minor = 0;
  return XRecordQueryVersion(display, &major, &minor) != 0;
}

}  // namespace

std::string missingExtensions(Display* display) {
  std::string missing;
  const auto check = [&](bool present, const char* name) {
    if (present) return;
    if (!missing.empty()) missing += ", ";
    missing += name;
  };
  check(hasXInput(display), "XInput 2.2");
  check(hasXkb(display), "XKB");
  check(hasXTest(display), "XTEST");
  check(hasRecord(display), "RECORD");
  return missing;
}

int extensionOpcode(Display* display, const char* name) {
  int opcode = 0;
  int event = 0;
  int error = 0;
  return XQueryExtension(display, name, &opcode, &event, &error) != 0 ? opcode : 0;
}

Window focusWindow(Display* display) {
  Window window = None;
  int revert = 0;
  XGetInputFocus(display, &window, &revert);
  return window == None || window == PointerRoot ? DefaultRootWindow(display) : window;
}

ErrorTrap::ErrorTrap(Display* display) : display_(display) {
  XSync(display_, False);
  errorCount = 0;
  XSetErrorHandler(countError);
}

// The counting handler stays: a window that vanished between two requests must not end the program.
ErrorTrap::~ErrorTrap() { XSync(display_, False); }

bool ErrorTrap::failed() {
  XSync(display_, False);
  return errorCount > 0;
}

}  // namespace kivra::x11
