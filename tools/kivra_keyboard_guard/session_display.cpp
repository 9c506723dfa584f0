#include "session_display.h"

#include "platform/wayland/guard/wlroots_guard_display.h"
#include "platform/wayland/guard/wlroots_seat.h"
#include "platform/x11/guard/x11_guard_display.h"

namespace kivra {

guard::GuardDisplay sessionDisplay() {
  return wayland::WlrootsSeat::isOffered() ? wayland::wlrootsGuardDisplay()
                                           : x11::x11GuardDisplay();
}

}  // namespace kivra
