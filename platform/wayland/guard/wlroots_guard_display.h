#pragma once

#include "platform/guard/process/guard_process.h"

namespace kivra::wayland {

/// The compositor of the environment, which offers what WlrootsSeat needs, for a guard and its
/// watcher.
guard::GuardDisplay wlrootsGuardDisplay();

}  // namespace kivra::wayland
