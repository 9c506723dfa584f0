#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>

#include "platform/guard/process/guard_process.h"
#include "platform/guard/process/heartbeat.h"

namespace kivra::guard {

/// Watches over a guard that is a child of this process. Sleeps while nobody types: a guard that is
/// stopped then is told of by the system, and one that rests cannot hang.
class GuardWatcher {
 public:
  /// A guard that is stopped keeps the keyboard no longer than this: it is continued, and what was
  /// typed meanwhile comes in order. A key that is down meanwhile must not begin to repeat.
  static constexpr std::chrono::milliseconds stoppedTime{100};

  /// One that is stopped for as long again so soon after that is ended.
  static constexpr std::chrono::milliseconds insistedTime{3000};

  /// One that only waits for the processor gets more time: with it go the keys that wait behind a
  /// decision. On two cores with six busy programs a second was not enough.
  static constexpr std::chrono::milliseconds hungTime{3000};

  /// SIGCHLD is blocked.
  GuardWatcher(pid_t guard, Heartbeat& heartbeat, KeyboardRescue& rescue)
      : guard_(guard), heartbeat_(heartbeat), rescue_(rescue) {}

  /// Returns when the guard has ended, by itself or by the watcher's hand; answers whether it was
  /// killed.
  bool watch();

 private:
  using Clock = std::chrono::steady_clock;

  bool hasEnded();
  void goOn();
  bool isHung() const;
  int timeout() const;
  bool wait(int signalFd);

  pid_t guard_;
  Heartbeat& heartbeat_;
  KeyboardRescue& rescue_;
  std::optional<Clock::time_point> stoppedSince_;
  std::optional<Clock::time_point> continued_;
  int quietRounds_ = 0;
  bool isAsleep_ = false;
  bool wasKilled_ = false;
};

}  // namespace kivra::guard
