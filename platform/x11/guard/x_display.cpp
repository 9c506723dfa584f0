#include "platform/x11/guard/x_display.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XI2.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kivra::x11 {

namespace {

int ignoreError(Display* /*display*/, XErrorEvent* /*event*/) { return 0; }

int endWithServer(Display* /*display*/) {
  std::cerr << "Kivra: связь с X-сервером потеряна\n";
  ::_exit(EXIT_FAILURE);
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

void requireExtensions(Display* display) {
  std::string missing;
  const auto require = [&](bool isPresent, const char* name) {
    if (!isPresent) missing += (missing.empty() ? "" : ", ") + std::string(name);
  };
  require(hasXInput(display), "XInput 2.2");
  require(hasXkb(display), "XKB");
  require(hasXTest(display), "XTEST");
  if (!missing.empty()) throw std::runtime_error("X-сервер не умеет: " + missing);
}

}  // namespace

DisplayPointer openDisplay() {
  XSetErrorHandler(ignoreError);
  XSetIOErrorHandler(endWithServer);
  DisplayPointer display(XOpenDisplay(nullptr));
  if (!display) throw std::runtime_error("нет X-сервера (DISPLAY)");
  requireExtensions(display.get());
  XTestGrabControl(display.get(), True);
  return display;
}

int extensionOpcode(Display* display, const char* name) {
  int opcode = 0;
  int event = 0;
  int error = 0;
  return XQueryExtension(display, name, &opcode, &event, &error) != 0 ? opcode : 0;
}

int xtestKeyboard(Display* display) {
  int count = 0;
  XIDeviceInfo* const devices = XIQueryDevice(display, XIAllDevices, &count);
  int found = 0;
  for (int i = 0; i < count && found == 0; ++i) {
    const auto isXtest = std::string_view(devices[i].name).find("XTEST") != std::string_view::npos;
    if (devices[i].use == XISlaveKeyboard && isXtest) found = devices[i].deviceid;
  }
  XIFreeDeviceInfo(devices);
  return found;
}

}  // namespace kivra::x11
