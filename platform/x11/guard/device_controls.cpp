#include "platform/x11/guard/device_controls.h"

#include <X11/XKBlib.h>

#include <memory>

namespace kivra::x11 {

namespace {

constexpr unsigned int filterMask = XkbSlowKeysMask | XkbBounceKeysMask;
constexpr unsigned int actingMask = XkbStickyKeysMask | XkbMouseKeysMask | XkbMouseKeysAccelMask;

struct FreeDescription {
  void operator()(XkbDescPtr description) const {
    XkbFreeKeyboard(description, XkbAllComponentsMask, True);
  }
};
using Description = std::unique_ptr<XkbDescRec, FreeDescription>;

Description controlsOf(Display* display, int device) {
  Description description(XkbGetMap(display, 0, static_cast<unsigned int>(device)));
  if (description && XkbGetControls(display, XkbAllControlsMask, description.get()) != Success) {
    description.reset();
  }
  return description;
}

}  // namespace

void DeviceControls::takeFilters() {
  filters_ |= enabledOn(XkbUseCoreKbd) & filterMask;
  change(XkbUseCoreKbd, [](unsigned int& enabled) { enabled &= ~filterMask; });
}

void DeviceControls::giveTo(int keyboard) const {
  change(keyboard, [this](unsigned int& enabled) { enabled = (enabled & ~actingMask) | filters_; });
}

void DeviceControls::giveFiltersBack() const {
  change(XkbUseCoreKbd, [this](unsigned int& enabled) { enabled |= filters_; });
}

void DeviceControls::findFiltersOf(int keyboard) { filters_ |= enabledOn(keyboard) & filterMask; }

/// Sets the session's controls, adjusted, for a device.
void DeviceControls::change(int device,
                            const std::function<void(unsigned int& enabled)>& adjust) const {
  const auto session = controlsOf(display_, XkbUseCoreKbd);
  if (!session) return;
  session->device_spec = static_cast<unsigned short>(device);
  adjust(session->ctrls->enabled_ctrls);
  XkbSetControls(display_,
                 XkbControlsEnabledMask | XkbRepeatKeysMask | XkbPerKeyRepeatMask |
                     XkbSlowKeysMask | XkbBounceKeysMask,
                 session.get());
}

unsigned int DeviceControls::enabledOn(int device) const {
  const auto controls = controlsOf(display_, device);
  return controls ? controls->ctrls->enabled_ctrls : 0;
}

}  // namespace kivra::x11
