#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace kivra {

/// A scheduled timer; destroying it invalidates it.
class Timer {
 public:
  virtual ~Timer() = default;
};

/// The main run loop: everything that it calls runs on the main thread, one block at a time.
class RunLoop {
 public:
  virtual ~RunLoop() = default;

  /// Calls `block` every `interval`, for the first time after one interval.
  virtual std::unique_ptr<Timer> scheduleRepeatingTimer(std::chrono::microseconds interval,
                                                        std::function<void()> block) = 0;

  /// Calls `block` once, `delay` from now, not before the caller has returned to the run loop.
  virtual void asyncAfter(std::chrono::microseconds delay, std::function<void()> block) = 0;

  /// Serves timers, queued blocks and input until `duration` has passed.
  virtual void runFor(std::chrono::microseconds duration) = 0;
};

}  // namespace kivra
