#pragma once

#include <atomic>
#include <chrono>
#include <optional>

namespace kivra::guard {

/// What the guard's process shows of itself to the one that watches it: since when it has been at
/// work without a rest. It costs the guard two stores a round; the watcher is woken only from its
/// sleep, in which it stays while nobody types.
class Heartbeat {
 public:
  /// In memory that a forked process shares. Throws std::system_error when there is none.
  static Heartbeat& shared();

  void beginWork();
  void rest() { busySince_.store(0, std::memory_order_release); }

  /// For how long the guard has been at work; nothing while it rests.
  std::optional<std::chrono::milliseconds> workTime() const;

  /// Readable when work begins after `sleep`.
  int wakeFd() const { return wakeFd_; }
  /// False when the guard has just gone to work, which it need not have told.
  bool sleep();
  void wakeUp();

 private:
  explicit Heartbeat(int wakeFd) : wakeFd_(wakeFd) {}

  int wakeFd_;
  std::atomic<std::int64_t> busySince_{0};  // milliseconds of the steady clock, 0 at rest
  std::atomic<bool> isWatcherAsleep_{true};
};

}  // namespace kivra::guard
