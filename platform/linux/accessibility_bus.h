#pragma once

#include <atomic>
#include <memory>

namespace kivra {

/// The session's accessibility bus, watched by a thread of its own: whether it answers and is
/// switched on, and whether the focused field reads a password. All answers are at hand at once.
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

  /// The field that took the focus last is a password field. False where the application tells the
  /// bus nothing.
  bool isPasswordFocused() const;

 private:
  class Watcher;
  std::unique_ptr<Watcher> watcher_;
};

}  // namespace kivra
