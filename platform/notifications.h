#pragma once

#include <functional>
#include <string>

namespace kivra {

/// News for the user that waits for no answer.
struct Notification {
  std::string title;
  std::string text = {};
  std::string button = {};            ///< empty: none
  std::function<void()> action = {};  ///< of the button
};

/// Where news is shown beside the windows.
class Notifications {
 public:
  virtual ~Notifications() = default;

  /// Shows the notification in place of the one before; does nothing where none can be shown.
  virtual void show(Notification notification) = 0;
};

}  // namespace kivra
