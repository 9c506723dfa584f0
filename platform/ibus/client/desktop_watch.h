#pragma once

#include <cstdint>
#include <string>

#include "platform/ibus/client/bus_link.h"

namespace kivra::ibus {

/// What the shell's extension tells Kivra of the desktop, and nobody else: each of those that it
/// tells is known by a name on the session bus.
class DesktopWatch {
 public:
  struct State {
    std::uint32_t group = 0;    ///< the XKB group; `noGroup` for a source without one
    std::uint32_t markers = 0;  ///< how many keys that select a layout have taken effect
    std::uint32_t window = 0;   ///< the one in front; 0 while the shell itself has the keyboard
    std::string application{};  ///< its application id
  };
  static constexpr std::uint32_t noGroup = 99;

  /// The guard's name: while it is owned, the extension has the guard's engine behind the shell's
  /// layouts.
  static constexpr auto guard = "app.kivra.Kivra.Keyboard";
  static constexpr auto program = "app.kivra.Kivra.Session";

  /// Throws std::runtime_error, with a line for the user, without a session bus, or when another
  /// process has the name.
  explicit DesktopWatch(const char* name);

  /// Waits until the extension has told how the desktop is; false if it is not there.
  bool waitUntilTold();

  /// Gives the name up.
  void leave();

  int fd() const { return sd_bus_get_fd(bus_.get()); }
  /// False when the bus is gone.
  bool dispatch() { return process(bus_.get()); }

  const State& state() const { return state_; }
  /// Whether the extension is there.
  bool isTold() const { return isTold_; }

 private:
  static int take(sd_bus_message* message, void* self, sd_bus_error* error);

  Bus bus_;
  const char* name_;
  State state_;
  bool isTold_ = false;
};

}  // namespace kivra::ibus
