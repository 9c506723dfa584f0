#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <utility>

#include "platform/clock.h"
#include "platform/embedded/effects.h"
#include "platform/run_loop.h"

namespace kivra::embedded {

/// A clock that moves only when told to, and the run loop that goes by it.
class VirtualTime : public Clock, public RunLoop {
 public:
  explicit VirtualTime(Effects& effects) : effects_(effects) {}
  VirtualTime(const VirtualTime&) = delete;
  VirtualTime& operator=(const VirtualTime&) = delete;
  ~VirtualTime() override { dropAll(); }

  std::chrono::microseconds now() override { return now_; }

  /// Moves the clock without serving anything: whoever sleeps blocks the run loop.
  void sleep(std::chrono::microseconds duration) override;

  std::unique_ptr<Timer> scheduleRepeatingTimer(std::chrono::microseconds interval,
                                                std::function<void()> block) override;
  void asyncAfter(std::chrono::microseconds delay, std::function<void()> block) override;

  /// Moves the clock, serving on the way what falls due.
  void runFor(std::chrono::microseconds duration) override;

  /// Serves what is due now.
  void serve() { runFor(std::chrono::microseconds(0)); }

  /// Forgets everything that is queued, as the end of a process does.
  void dropAll();

 private:
  class RepeatingTimer;
  using Key = std::pair<std::chrono::microseconds, std::uint64_t>;  // due time, order of queueing

  void enqueue(std::chrono::microseconds due, std::function<void()> block);
  void enqueueRepetition(const std::shared_ptr<const bool>& alive, std::chrono::microseconds due,
                         std::chrono::microseconds interval, const std::function<void()>& block);

  Effects& effects_;
  std::chrono::microseconds now_{0};
  std::uint64_t queued_ = 0;
  std::map<Key, std::function<void()>> queue_;
};

}  // namespace kivra::embedded
