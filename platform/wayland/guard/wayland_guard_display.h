#pragma once

#include <optional>

#include "platform/guard/process/guard_process.h"

namespace kivra::wayland {

/// The compositor of the environment, for a guard and its watcher; nothing when there is none that
/// lets a guard be the keyboard.
std::optional<guard::GuardDisplay> waylandGuardDisplay();

}  // namespace kivra::wayland
