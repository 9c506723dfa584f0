#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <future>
#include <memory>
#include <optional>
#include <string>

#include "platform/atspi/accessible_object.h"
#include "platform/atspi/accessible_text_part.h"

namespace kivra {

class AccessibilityWatcher;

/// The session's accessibility bus, watched by a thread of its own: whether it answers and is
/// switched on, and whether the focused field reads a password. All answers but texts are at hand
/// at once.
class AccessibilityBus {
 public:
  /// Waits at most half a second for the bus's first answer.
  AccessibilityBus();
  ~AccessibilityBus();
  AccessibilityBus(const AccessibilityBus&) = delete;
  AccessibilityBus& operator=(const AccessibilityBus&) = delete;

  /// org.a11y.Status says that accessibility is on, and the bus has an address.
  bool isEnabled() const;

  /// Asks the session to switch accessibility on; returns before it is.
  void requestEnabled();

  /// Asks each application that has come since about its windows, see AccessibleApplications;
  /// returns at once.
  void meetApplications();

  /// The field that took the focus last is a password field. False where the application tells the
  /// bus nothing.
  bool isPasswordFocused() const;

  /// In the focused field a selection stands behind at least so many characters. Asks the
  /// application, for at most 50 ms, and only when it has told of a selection in that field; false
  /// where it tells nothing, and for 2 s after it has not answered.
  bool hasSelectionBehind(std::size_t characters);

  /// When the caret of the focused field moved last, as far as its application tells. Applications
  /// are asked to tell of it from the first call on.
  std::chrono::steady_clock::time_point lastCaretMove();

  /// The object that took the focus last and has not told that it lost it.
  std::optional<AccessibleObject> focusedObject() const;

  /// The text of the object, read on the watching thread; see AccessibleText. May come after the
  /// deadline, with nothing.
  std::future<std::optional<std::string>> text(const AccessibleObject& object,
                                               AccessibleTextPart part,
                                               std::chrono::steady_clock::time_point deadline);

 private:
  std::unique_ptr<AccessibilityWatcher> watcher_;
  std::chrono::steady_clock::time_point nextQuestion_;
  bool isCaretFollowed_ = false;
};

}  // namespace kivra
