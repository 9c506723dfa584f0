#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/guard/guard_event_posting.h"
#include "platform/guard/guard_event_taps.h"
#include "platform/guard/guard_link.h"
#include "platform/guard/input_group.h"
#include "platform/guard/posted_keys.h"
#include "platform/guard/watch_fd.h"
#include "platform/log.h"
#include "platform/run_loop.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_input_sources.h"
#include "platform/x11/x11_workspace.h"

namespace kivra::x11 {

/// The services of an X11 session, joined.
class X11Desktop {
 public:
  struct Environment {
    RunLoop& runLoop;
    Log& log;
    guard::WatchFd watchFd;
    std::string guardProgram;  ///< executable of the keyboard guard
    std::function<bool()> isPasswordFocused;
    std::function<void()> activeWindowChanged;
    /// A selection stands in the focused field behind at least so many characters.
    std::function<bool(std::size_t characters)> hasSelectionBehind;
    std::function<void(std::string_view)> open;  ///< opens an address
    /// Called with each XKB group that is selected, while the guard locks it.
    std::function<void(std::uint32_t group)> groupSelected;
    /// A key that the program's own windows take, before the tap does.
    std::function<bool(const Event&)> isTakenByOwnWindow;
    std::function<void()> connectionLost;  ///< called once when the X server is gone
  };

  explicit X11Desktop(Environment environment);

  /// Connects unless connected; false while the session cannot serve, for the reason `problem`.
  bool connect();
  const std::string& problem() const { return connection_.problem(); }

  /// Whether the problem is that the session is one of Wayland.
  bool isWaylandSession() const { return connection_.isOfWaylandSession(); }

  /// Whether the keyboard guard, which a tap starts, runs.
  bool isGuardRunning() const { return guard_.fd() >= 0 && !guard_.isGone(); }

 private:
  void readEvents();

  Environment environment_;
  X11Connection connection_;
  guard::GuardLink guard_;
  guard::PostedKeys posted_;
  guard::InputGroup group_;
  std::shared_ptr<void> watch_;

 public:
  guard::GuardEventPosting eventPosting{posted_};
  guard::GuardEventTaps eventTaps;
  X11InputSources inputSources;
  X11Workspace workspace;
};

}  // namespace kivra::x11
