#pragma once

#include <memory>
#include <string>

#include "platform/guard/keyboard_session.h"

namespace kivra {

/// Whether there is a display of any kind; which of them the program can work on `openSession`
/// finds out.
bool hasDisplay();

/// What the environment calls the display: "Wayland (wayland-1)".
std::string displayName();

/// The session that the environment names, not yet connected: that of a Wayland compositor that has
/// what the program needs, that of GNOME Shell, else that of the X server.
std::unique_ptr<guard::KeyboardSession> openSession(
    guard::KeyboardSession::Environment environment);

}  // namespace kivra
