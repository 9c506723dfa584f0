#include "platform/wayland/guard/wayland_guard_display.h"

#include <cstdlib>

#include "platform/wayland/guard/compositor_display.h"
#include "platform/wayland/guard/kwin_seat.h"
#include "platform/wayland/guard/wlroots_seat.h"

namespace kivra::wayland {

std::optional<guard::GuardDisplay> waylandGuardDisplay() {
  // Compositors hand a connection to what they have started themselves; it can be opened but once.
  if (std::getenv("WAYLAND_SOCKET") != nullptr) return displayOf<KwinSeat>();
  if (WlrootsSeat::isOffered()) return displayOf<WlrootsSeat>();
  return std::nullopt;
}

}  // namespace kivra::wayland
