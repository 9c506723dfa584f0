#pragma once

#include <string>

#include "operation.h"
#include "platform/embedded/embedded_desktop.h"

namespace kivra::desk {

/// The user in front of the program's menu and windows. Every operation throws ScriptError for what
/// cannot be done: an unknown or disabled item or control, a window that is not open, a control on
/// a tab that is not chosen.
class User {
 public:
  explicit User(embedded::EmbeddedDesktop& desktop) : desktop_(desktop) {}

  /// Chooses the menu item of this title.
  void choose(const std::string& item);

  /// The window of this name as the screen shows it.
  embedded::Json look(const std::string& window) const;

  /// Presses the button, flips the switch or chooses the tab with this text; a button also answers
  /// to the name that a screen reader reads.
  void press(const std::string& window, const std::string& text);

  /// Puts a text into the field with this placeholder.
  void edit(const std::string& window, const std::string& placeholder, const std::string& text);

  /// Chooses an option of the picker with this text.
  void pick(const std::string& window, const std::string& picker, const std::string& option);

  void close(const std::string& window);

 private:
  const View& content(const std::string& window) const;

  embedded::EmbeddedDesktop& desktop_;
};

}  // namespace kivra::desk
