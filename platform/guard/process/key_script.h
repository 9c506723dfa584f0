#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "platform/guard/process/seat.h"
#include "platform/guard/process/seat_keys.h"
#include "platform/guard/protocol/guard_protocol.h"

namespace kivra::guard {

/// What is typed for the program, and what puts the keyboard back as the hands hold it. A script
/// that is broken off at a pause goes on with `after`.
struct KeyScript {
  Steps body;
  Steps after;
};

/// What the keyboard is like when a script begins.
struct KeyScriptSituation {
  const KeyMap& keyMap;
  std::uint32_t group = 0;
  KeySet down;  ///< at the application
  KeySet held;  ///< by hands
  bool isCapsLocked = false;
  /// Between keys and a character that no key types.
  std::chrono::milliseconds pauseBeforeCharacters{};
  /// A key that is held and was kept from the application: if the script ends with it, it stays
  /// down, and repeats as it would have. 0 for none.
  std::uint16_t trigger = 0;
};

/// Turns posted keys into steps that come out the same whatever hands hold down: what is down is
/// let go of first, each key gets exactly the modifiers that it was posted with, and Shift and
/// Control are pressed again if hands hold them; nothing else stays down. The locks and their keys
/// are left as they are: keys that were typed with Caps Lock on come out with it as well, while
/// characters keep their case. A Command chord becomes the desktop's own shortcut.
KeyScript writeKeyScript(const std::vector<PostedKey>& keys, const KeyScriptSituation& situation);

}  // namespace kivra::guard
