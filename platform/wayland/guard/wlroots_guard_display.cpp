#include "platform/wayland/guard/wlroots_guard_display.h"

#include "platform/wayland/guard/wlroots_seat.h"

namespace kivra::wayland {

namespace {

/// The compositor itself gives the keyboard back and lets go of the keys.
class NoRescue : public guard::KeyboardRescue {
 public:
  int fd() const override { return -1; }
  bool readEvents() override { return true; }
  void letGoOfKeys() override {}
};

}  // namespace

guard::GuardDisplay wlrootsGuardDisplay() {
  return {.openSeat = [] { return std::make_unique<WlrootsSeat>(); },
          .openRescue = [] { return std::make_unique<NoRescue>(); }};
}

}  // namespace kivra::wayland
