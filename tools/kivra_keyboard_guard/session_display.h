#pragma once

#include "platform/guard/process/guard_process.h"

namespace kivra {

/// The display of the session that this process runs in: a Wayland compositor that lets a guard be
/// the keyboard, GNOME Shell with IBus, else the X server.
guard::GuardDisplay sessionDisplay();

}  // namespace kivra
