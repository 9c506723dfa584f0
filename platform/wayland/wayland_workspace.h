#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/wayland/client/window_watch.h"
#include "platform/workspace.h"

namespace kivra::wayland {

/// The active window's application, and whether it reads a password; what the compositor does not
/// tell is asked of others.
class WaylandWorkspace : public Workspace {
 public:
  struct Environment {
    /// Takes in what the compositor has told and the run loop has not come to.
    std::function<void()> readEvents;
    std::string ownApplication;                  ///< the application id of this program's windows
    std::function<bool()> isPasswordFocused;     ///< the focused field is one
    std::function<void(std::string_view)> open;  ///< opens an address
  };

  WaylandWorkspace(const WindowWatch& windows, Environment environment)
      : windows_(windows), environment_(std::move(environment)) {}

  std::optional<std::string> frontmostBundleIdentifier() override;

  /// What is typed into the program's own windows is not to be changed either.
  bool isSecureEventInputEnabled() override {
    return isOwnWindowInFront() || environment_.isPasswordFocused();
  }

  void open(std::string_view url) override { environment_.open(url); }

  /// Whether the active window is one of this program.
  bool isOwnWindowInFront() { return activeApplication() == environment_.ownApplication; }

 private:
  std::optional<std::string> activeApplication();

  const WindowWatch& windows_;
  Environment environment_;
};

}  // namespace kivra::wayland
