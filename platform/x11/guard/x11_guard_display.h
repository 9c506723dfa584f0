#pragma once

#include "platform/guard/process/guard_process.h"

namespace kivra::x11 {

/// The X server of $DISPLAY, for a guard and its watcher.
guard::GuardDisplay x11GuardDisplay();

}  // namespace kivra::x11
