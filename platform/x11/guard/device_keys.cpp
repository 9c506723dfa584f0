#include "platform/x11/guard/device_keys.h"

#include <X11/extensions/XI.h>
#include <X11/extensions/XInput.h>

#include <memory>

namespace kivra::x11 {

namespace {

void addKeys(const XKeyState& state, KeyCodes& keys) {
  for (std::size_t code = 0; code < keys.size(); ++code) {
    const auto byte = static_cast<unsigned char>(state.keys[code / 8]);
    if ((byte >> (code % 8) & 1U) != 0) keys.set(code);
  }
}

}  // namespace

KeyCodes keysDown(Display* display, int device) {
  KeyCodes keys;
  // Only the first version of XInput tells the keys of a single device.
  XDevice* const opened = XOpenDevice(display, static_cast<XID>(device));
  if (opened == nullptr) return keys;
  const std::unique_ptr<XDeviceState, void (*)(XDeviceState*)> state(
      XQueryDeviceState(display, opened), XFreeDeviceState);
  XInputClass* data = state ? state->data : nullptr;
  for (int i = 0; state && i < state->num_classes; ++i) {
    if (data->c_class == KeyClass) addKeys(*reinterpret_cast<XKeyState*>(data), keys);
    data = reinterpret_cast<XInputClass*>(reinterpret_cast<char*>(data) + data->length);
  }
  XCloseDevice(display, opened);
  return keys;
}

}  // namespace kivra::x11
