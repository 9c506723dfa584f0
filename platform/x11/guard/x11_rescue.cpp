#include "platform/x11/guard/x11_rescue.h"

#include <X11/extensions/XI2.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>

#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "platform/x11/guard/device_controls.h"
#include "platform/x11/guard/device_keys.h"

namespace kivra::x11 {

namespace {

struct PresentKeyboards {
  std::vector<int> attached;
  bool isAnyFloating = false;
};

PresentKeyboards keyboardsOf(Display* display) {
  PresentKeyboards keyboards;
  int count = 0;
  const std::unique_ptr<XIDeviceInfo, void (*)(XIDeviceInfo*)> devices(
      XIQueryDevice(display, XIAllDevices, &count), XIFreeDeviceInfo);
  for (int i = 0; devices && i < count; ++i) {
    const auto& device = devices.get()[i];
    if (device.use == XISlaveKeyboard) keyboards.attached.push_back(device.deviceid);
    if (device.use == XIFloatingSlave) keyboards.isAnyFloating = true;
  }
  return keyboards;
}

}  // namespace

bool X11Rescue::readEvents() {
  // Nothing is selected, but the server tells every client of changed keyboard maps. A server that
  // is gone ends the process in here.
  while (XPending(display_.get()) > 0) {
    XEvent event;
    XNextEvent(display_.get(), &event);
  }
  return true;
}

void X11Rescue::letGoOfKeys() {
  using namespace std::chrono_literals;
  // What the ended guard has still sent comes before its keyboards are given back.
  constexpr auto longest = 1s;
  const auto end = std::chrono::steady_clock::now() + longest;
  auto keyboards = keyboardsOf(display_.get());
  while (keyboards.isAnyFloating && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(2ms);
    keyboards = keyboardsOf(display_.get());
  }
  releaseXtestKeys(display_.get());
  DeviceControls controls(display_.get());
  for (const auto keyboard : keyboards.attached) controls.findFiltersOf(keyboard);
  controls.giveFiltersBack();
  XSync(display_.get(), False);
}

void releaseXtestKeys(Display* display) {
  const auto keys = keysDown(display, xtestKeyboard(display));
  for (unsigned int code = firstKeyCode; code < keyCodeLimit; ++code) {
    if (keys.test(code)) XTestFakeKeyEvent(display, code, False, CurrentTime);
  }
  XSync(display, False);
}

}  // namespace kivra::x11
