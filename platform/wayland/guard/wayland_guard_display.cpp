#include "platform/wayland/guard/wayland_guard_display.h"

#include <cstdlib>

#include "platform/wayland/guard/kwin_seat.h"
#include "platform/wayland/guard/wlroots_seat.h"

namespace kivra::wayland {

namespace {

/// Compositors give the keyboard back and let go of the keys by themselves.
class NoRescue : public guard::KeyboardRescue {
 public:
  int fd() const override { return -1; }
  bool readEvents() override { return true; }
  void letGoOfKeys() override {}
};

template <class Seat>
guard::GuardDisplay displayOf() {
  return {.openSeat = [] { return std::make_unique<Seat>(); },
          .openRescue = [] { return std::make_unique<NoRescue>(); }};
}

}  // namespace

std::optional<guard::GuardDisplay> waylandGuardDisplay() {
  // Compositors hand a connection to what they have started themselves; it can be opened but once.
  if (std::getenv("WAYLAND_SOCKET") != nullptr) return displayOf<KwinSeat>();
  if (WlrootsSeat::isOffered()) return displayOf<WlrootsSeat>();
  return std::nullopt;
}

}  // namespace kivra::wayland
