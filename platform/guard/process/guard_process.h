#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/guard/process/seat.h"

namespace kivra::guard {

/// What puts the keyboard right after a guard has ended, on a connection of its own.
class KeyboardRescue {
 public:
  virtual ~KeyboardRescue() = default;

  /// Readable when the display has sent something; -1 for none. `readEvents` answers false once the
  /// display is gone.
  virtual int fd() const = 0;
  virtual bool readEvents() = 0;

  /// Lets go of every key that a guard has left down and no hand holds.
  virtual void letGoOfKeys() = 0;
};

/// How a guard and its watcher reach the display. Both throw std::runtime_error, with a line for
/// the user, when it lacks something.
struct GuardDisplay {
  std::function<std::unique_ptr<Seat>()> openSeat;
  std::function<std::unique_ptr<KeyboardRescue>()> openRescue;
};

/// Who is told of keys.
struct GuardedProgram {
  /// The guard's end of the socket of the program that has started it. -1 where the desktop has:
  int channelFd = -1;
  std::filesystem::path place{};  ///< then programs listen here,
  std::string executable{};       ///< and have to be this one.
};

/// Runs a guard and its watcher, a process each, in a session of their own, so that what stops or
/// interrupts the program from its terminal reaches neither. The guard serves the program until
/// either is gone or, if the desktop has started it, one program after the other; the watcher
/// continues a guard that has been stopped for 0.1 s, ends one that is stopped again or at work for
/// 3 s, and lets go of what an ended guard has left down, and ends by SIGKILL after one that was
/// killed. Answers the exit status;
/// `_exit` is meant to follow.
int runGuard(const GuardDisplay& display, const GuardedProgram& program);

}  // namespace kivra::guard
