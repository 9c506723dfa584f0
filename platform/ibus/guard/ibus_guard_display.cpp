#include "platform/ibus/guard/ibus_guard_display.h"

#include <stdexcept>

#include "platform/ibus/guard/ibus_seat.h"
#include "platform/wayland/client/connection.h"
#include "platform/wayland/guard/compositor_display.h"

namespace kivra::ibus {

std::optional<guard::GuardDisplay> ibusGuardDisplay() try {
  if (wayland::Connection().serverName() != "gnome-shell") return std::nullopt;
  return wayland::displayOf<IbusSeat>();
} catch (const std::runtime_error&) {
  return std::nullopt;
}

}  // namespace kivra::ibus
