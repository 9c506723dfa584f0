#include "platform/x11/guard/keyboards.h"

#include <X11/extensions/XI2.h>
#include <X11/extensions/XInput2.h>

#include <algorithm>
#include <array>
#include <memory>
#include <set>
#include <span>
#include <string_view>

namespace kivra::x11 {

namespace {

using Devices = std::unique_ptr<XIDeviceInfo, void (*)(XIDeviceInfo*)>;

// Servers within a window: Xephyr's crashes when its keyboard floats, Xvfb's never types.
bool isLeftAlone(std::string_view name) {
  return name.find("XTEST") != std::string_view::npos || name == "Xephyr virtual keyboard" ||
         name == "Xvfb virtual keyboard";
}

int masterOf(Display* display, int device) {
  int count = 0;
  const Devices info(XIQueryDevice(display, device, &count), XIFreeDeviceInfo);
  return info && count > 0 ? info.get()->attachment : 0;
}

}  // namespace

Keyboards::Keyboards(Display* display, int xtest)
    : display_(display), master_(masterOf(display, xtest)) {}

Keyboards::Changes Keyboards::update() {
  Changes changes;
  int count = 0;
  const Devices devices(XIQueryDevice(display_, XIAllDevices, &count), XIFreeDeviceInfo);
  std::set<int> present;
  for (int i = 0; devices && i < count; ++i) {
    const auto& device = devices.get()[i];
    if (device.enabled == 0 || isLeftAlone(device.name)) continue;
    if (device.use == XIFloatingSlave && isHeld(device.deviceid)) present.insert(device.deviceid);
    if (device.use == XIFloatingSlave && isHeldByOther(device)) changes.isBusy = true;
    if (device.use != XISlaveKeyboard || device.attachment != master_) continue;
    // A device that was off and on again is back with its master although the grab still holds:
    // its keys would come twice.
    if (isHeld(device.deviceid)) XIUngrabDevice(display_, device.deviceid, CurrentTime);
    if (grab(device.deviceid)) {
      present.insert(device.deviceid);
      changes.taken.push_back(device.deviceid);
    } else {
      changes.isBusy = true;
    }
  }
  for (const auto& [device, keys] : held_) {
    if (!present.contains(device)) changes.lost.push_back(device);
  }
  for (const auto device : changes.taken) held_.try_emplace(device);
  changes.isNoneLeft = present.empty();
  return changes;
}

bool Keyboards::isHeldByOther(const XIDeviceInfo& device) {
  const std::span classes(device.classes, static_cast<std::size_t>(device.num_classes));
  const auto hasKeys = std::ranges::any_of(
      classes, [](const XIAnyClassInfo* info) { return info->type == XIKeyClass; });
  if (!hasKeys || isHeld(device.deviceid)) return false;
  if (!grab(device.deviceid)) return true;
  // Nobody holds it: its owner wants it to float.
  XIUngrabDevice(display_, device.deviceid, CurrentTime);
  return false;
}

bool Keyboards::grab(int device) {
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
  XISetMask(bits.data(), XI_KeyPress);
  XISetMask(bits.data(), XI_KeyRelease);
  XIEventMask mask{.deviceid = device, .mask_len = bits.size(), .mask = bits.data()};
  return XIGrabDevice(display_, device, DefaultRootWindow(display_), CurrentTime, None,
                      XIGrabModeAsync, XIGrabModeAsync, False, &mask) == XIGrabSuccess;
}

void Keyboards::release() {
  for (const auto& [device, keys] : held_) XIUngrabDevice(display_, device, CurrentTime);
  held_.clear();
}

}  // namespace kivra::x11
