#pragma once

#include <memory>

#include "platform/guard/keyboard_session.h"

namespace kivra {

/// Whether there is a display of any kind; which of them the program can work on `openSession`
/// finds out.
bool hasDisplay();

/// The session that the environment names, not yet connected.
std::unique_ptr<guard::KeyboardSession> openSession(
    guard::KeyboardSession::Environment environment);

}  // namespace kivra
