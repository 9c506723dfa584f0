#pragma once

#include <functional>

#include "platform/workspace.h"
#include "platform/x11/x11_connection.h"

namespace kivra::x11 {

/// The active window's application, and whether it reads a password.
class X11Workspace : public Workspace {
 public:
  /// `isPasswordFocused` answers for the accessibility bus.
  X11Workspace(X11Connection& connection, std::function<bool()> isPasswordFocused)
      : connection_(connection), isPasswordFocused_(std::move(isPasswordFocused)) {}

  std::optional<std::string> frontmostBundleIdentifier() override;

  /// While another client holds the keyboard no key is decided of at all, so only the focused field
  /// remains to be asked about.
  bool isSecureEventInputEnabled() override { return isPasswordFocused_(); }
  void open(std::string_view /*url*/) override {}

 private:
  std::string applicationName(xcb_window_t window);

  X11Connection& connection_;
  std::function<bool()> isPasswordFocused_;
};

}  // namespace kivra::x11
