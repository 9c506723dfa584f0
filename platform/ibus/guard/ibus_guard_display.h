#pragma once

#include <optional>

#include "platform/guard/process/guard_process.h"

namespace kivra::ibus {

/// GNOME Shell as a guard's display, if this is a Wayland session of its.
std::optional<guard::GuardDisplay> ibusGuardDisplay();

}  // namespace kivra::ibus
