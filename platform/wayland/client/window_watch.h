#pragma once

#include <optional>
#include <string>
#include <string_view>

struct wl_seat;

namespace kivra::wayland {

/// Which window is active. None is while the session is locked, and while what is no window of a
/// program's has the focus.
class WindowWatch {
 public:
  virtual ~WindowWatch() = default;

  /// The application id of the active window, empty when it has none; nothing when none is active.
  virtual std::optional<std::string> activeApplication() const = 0;
  /// Whether another window has become active since this was asked.
  virtual bool takeMove() = 0;
  /// Brings the window of the application that was opened last to the front.
  virtual void activateLast(std::string_view application, wl_seat* seat) const = 0;
};

}  // namespace kivra::wayland
