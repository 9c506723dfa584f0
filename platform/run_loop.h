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

  /// Turns the loop, a slice at a time, until `isOver` holds: for the few answers that have to be
  /// there before the caller may go on. Timers and input are served meanwhile; tasks that could go
  /// on wait (`isHeldUp`), since what they do would fall into the middle of what the caller does.
  void runUntil(const std::function<bool()>& isOver,
                std::chrono::microseconds slice = std::chrono::milliseconds(1)) {
    const auto release = [](RunLoop* loop) { --loop->waits_; };
    ++waits_;
    const std::unique_ptr<RunLoop, decltype(release)> wait(this, release);
    while (!isOver()) runFor(slice);
  }
  bool isHeldUp() const { return waits_ > 0; }

 private:
  int waits_ = 0;
};

}  // namespace kivra
