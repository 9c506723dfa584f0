#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/workspace.h"
#include "platform/x11/x11_connection.h"

namespace kivra::x11 {

/// The active window's application, and whether it reads a password; what X does not know is asked
/// of others.
class X11Workspace : public Workspace {
 public:
  struct Environment {
    std::function<bool()> isPasswordFocused;  ///< the focused field is one
    std::function<void()> activeWindowChanged;
    std::function<void(std::string_view)> open;  ///< opens an address
  };

  X11Workspace(X11Connection& connection, Environment environment);
  ~X11Workspace() override;

  std::optional<std::string> frontmostBundleIdentifier() override;

  /// While another client holds the keyboard no key is decided of at all, so only the focused field
  /// remains to be asked about. What is typed into the program's own windows is not to be changed
  /// either.
  bool isSecureEventInputEnabled() override {
    return isOwnWindowInFront() || environment_.isPasswordFocused();
  }

  std::string shortcutOwner(const KeyChord& keys) override;
  void open(std::string_view url) override { environment_.open(url); }

  /// Whether the active window is one of this process.
  bool isOwnWindowInFront();

 private:
  void readFrontmost();
  std::string applicationName(xcb_window_t window);
  bool isOfThisProcess(xcb_window_t window);

  X11Connection& connection_;
  Environment environment_;
  // Asked for at each word while the keyboard waits, and a dozen round trips to find out.
  std::optional<std::string> identifier_;
  bool isOwn_ = false;
  bool isKnown_ = false;
  xcb_window_t watched_ = 0;
};

}  // namespace kivra::x11
