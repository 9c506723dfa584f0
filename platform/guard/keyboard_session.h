#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/event_posting.h"
#include "platform/event_tap.h"
#include "platform/guard/watch_fd.h"
#include "platform/input_sources.h"
#include "platform/log.h"
#include "platform/pasteboard.h"
#include "platform/run_loop.h"
#include "platform/status_bar.h"
#include "platform/workspace.h"

namespace kivra {
struct SessionFacts;
}

namespace kivra::guard {

/// A desktop's session by its display: the keyboard, the window in front, the clipboard. One for
/// each kind of display.
class KeyboardSession {
 public:
  /// What a session needs of the program around it.
  struct Environment {
    RunLoop& runLoop;
    Log& log;
    WatchFd watchFd;
    std::string guardProgram;  ///< executable of the keyboard guard
    std::function<bool()> isPasswordFocused;
    std::function<void()> activeWindowChanged;
    /// A selection stands in the focused field behind at least so many characters.
    std::function<bool(std::size_t characters)> hasSelectionBehind;
    /// When the caret of the focused field moved last, for displays that tell nobody of clicks.
    std::function<std::chrono::steady_clock::time_point()> lastCaretMove;
    std::function<void(std::string_view)> open;  ///< opens an address
    /// Called with each XKB group that is selected, while the guard locks it.
    std::function<void(std::uint32_t group)> groupSelected;
    /// A key that the program's own windows take, before the tap does.
    std::function<bool(const Event&)> isTakenByOwnWindow;
    std::function<void()> connectionLost;  ///< called once when the display is gone
  };

  virtual ~KeyboardSession() = default;

  virtual EventTaps& eventTaps() = 0;
  virtual EventPosting& eventPosting() = 0;
  virtual InputSources& inputSources() = 0;
  virtual Workspace& workspace() = 0;
  virtual Pasteboard& pasteboard() = 0;

  /// Connects unless connected; false while the session cannot serve, for the reason `problem`: a
  /// line for the user, empty while there is none.
  virtual bool connect() = 0;
  /// The same when the user asks for it: it may change the desktop's settings, as `problem` says.
  virtual bool request() { return connect(); }
  virtual std::string problem() const = 0;
  /// The same, short enough for a menu.
  virtual std::string impediment() const { return problem(); }

  /// Whether the keyboard guard, which a tap starts, runs.
  virtual bool isGuardRunning() const = 0;

  /// Whether the active window is one of this process.
  virtual bool isOwnWindowInFront() = 0;

  /// Brings a window of the program to the front, as a pager does for the user: a request of the
  /// program itself, whose windows were not used for long, is refused by managers that keep
  /// programs from stealing the focus. `window` is the display's number of it.
  virtual void activateWindow(std::uint32_t window) = 0;

  /// Asks the active window for a sign of life, which it gives when it has handled the keys that it
  /// was sent before. The answer tells, each time that it is called, whether that is still to come.
  virtual std::function<bool()> pingActiveWindow() = 0;

  /// Fills in what the display is and whom it has for its input method.
  virtual void tell(SessionFacts& facts) = 0;

  /// The tray of the old kind that runs on the display; nothing where there is none.
  virtual std::optional<SystemTray> systemTray() = 0;
};

}  // namespace kivra::guard
