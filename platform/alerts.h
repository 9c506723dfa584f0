#pragma once

#include <string>
#include <vector>

namespace kivra {

/// A question to the user.
struct Alert {
  std::string messageText;      ///< the title
  std::string informativeText;  ///< the explanation below it
  std::vector<std::string> buttons;
};

/// What `runModal` answers for the first button; the buttons after it count on from here.
inline constexpr int alertFirstButtonReturn = 1000;

/// Ways to catch the user's attention.
class Alerts {
 public:
  virtual ~Alerts() = default;

  /// Shows the alert and keeps the run loop turning until a button is pressed; closing it in any
  /// other way counts as the last button, and so does not being able to show it.
  virtual int runModal(const Alert& alert) = 0;

  /// The system beep; silent where there is none.
  virtual void beep() = 0;
};

}  // namespace kivra
