#include "platform/x11/guard/x11_guard_display.h"

#include "platform/x11/guard/x11_rescue.h"
#include "platform/x11/guard/x11_seat.h"

namespace kivra::x11 {

guard::GuardDisplay x11GuardDisplay() {
  return {.openSeat = [] { return std::make_unique<X11Seat>(); },
          .openRescue = [] { return std::make_unique<X11Rescue>(); }};
}

}  // namespace kivra::x11
