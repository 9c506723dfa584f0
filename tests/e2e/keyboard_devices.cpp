#include "keyboard_devices.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XInput2.h>

#include <array>
#include <span>
#include <stdexcept>

namespace kivra::e2e {

namespace {

struct Device {
  int id = 0;
  int master = 0;
};

Device find(Display* display, const std::string& name) {
  int count = 0;
  auto* const devices = XIQueryDevice(display, XIAllDevices, &count);
  Device found;
  for (const auto& device : std::span(devices, static_cast<std::size_t>(count))) {
    if (name != device.name) continue;
    found = {device.deviceid, device.use == XIFloatingSlave ? 0 : device.attachment};
  }
  XIFreeDeviceInfo(devices);
  if (found.id == 0) throw std::runtime_error("no device " + name);
  return found;
}

}  // namespace

KeyboardDevices::KeyboardDevices(const std::string& display)
    : display_(XOpenDisplay(display.c_str())) {
  if (display_ == nullptr) throw std::runtime_error("no display " + display);
  int major = 2;
  int minor = 2;
  XIQueryVersion(display_, &major, &minor);
}

KeyboardDevices::~KeyboardDevices() { XCloseDisplay(display_); }

int KeyboardDevices::id(const std::string& name) const { return find(display_, name).id; }

int KeyboardDevices::master(const std::string& name) const { return find(display_, name).master; }

unsigned int KeyboardDevices::locks(const std::string& name) const {
  XkbStateRec state{};
  XkbGetState(display_, static_cast<unsigned int>(id(name)), &state);
  return state.locked_mods;
}

bool KeyboardDevices::isLit(const std::string& name, const char* lamp) const {
  int isOn = False;
  XkbGetNamedDeviceIndicator(display_, static_cast<unsigned int>(id(name)), XkbDfltXIClass,
                             XkbDfltXIId, XInternAtom(display_, lamp, False), nullptr, &isOn,
                             nullptr, nullptr);
  return isOn == True;
}

void KeyboardDevices::lock(unsigned int modifiers, bool isOn) {
  XkbLockModifiers(display_, XkbUseCoreKbd, modifiers, isOn ? modifiers : 0);
  XSync(display_, False);
}

bool KeyboardDevices::grab(const std::string& name) {
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
  XISetMask(bits.data(), XI_KeyPress);
  XIEventMask mask{.deviceid = id(name), .mask_len = bits.size(), .mask = bits.data()};
  return XIGrabDevice(display_, id(name), DefaultRootWindow(display_), CurrentTime, None,
                      XIGrabModeAsync, XIGrabModeAsync, False, &mask) == XIGrabSuccess;
}

void KeyboardDevices::letGo(const std::string& name) {
  XIUngrabDevice(display_, id(name), CurrentTime);
  XSync(display_, False);
}

}  // namespace kivra::e2e
