#pragma once

#include <atomic>
#include <chrono>
#include <mutex>
#include <optional>

#include "platform/atspi/accessible_object.h"

namespace kivra {

/// The object that took the focus last and has not told that it lost it, and what has become known
/// of it. The watching thread writes, any thread reads, and nobody waits.
class FocusedObject {
 public:
  std::optional<AccessibleObject> get() const {
    const std::lock_guard lock(mutex_);
    return object_;
  }

  void gained(const AccessibleObject& object) { set(object); }
  /// Another may have gained it before.
  void lost(const AccessibleObject& object) {
    if (object != get()) return;
    set(std::nullopt);
    isPassword = false;
  }

  std::atomic<bool> isPassword = false;
  std::atomic<bool> mayHaveSelection = false;
  std::atomic<std::chrono::steady_clock::time_point> lastCaretMove{};

 private:
  void set(const std::optional<AccessibleObject>& object) {
    const std::lock_guard lock(mutex_);
    object_ = object;
    mayHaveSelection = false;
  }

  mutable std::mutex mutex_;
  std::optional<AccessibleObject> object_;
};

}  // namespace kivra
