#pragma once

#include <functional>
#include <memory>

#include "platform/run_loop.h"

namespace kivra::x11 {

/// Notices a keyboard guard that does not answer. It asks while keys are typed and stays asleep
/// while nobody types: a guard that is stopped then does no harm before the next key.
class GuardWatchdog {
 public:
  struct Environment {
    RunLoop& runLoop;
    std::function<void()> readReports;  ///< hands on what the guard has said; calls `heard`
    std::function<void()> ping;
    std::function<bool()> isStopped;  ///< a signal has stopped the guard
    /// Called for a guard that is stopped, or has not answered for three seconds.
    std::function<void()> bite;
    /// Calls once at the next key in the session, whoever gets it.
    std::function<void(std::function<void()>)> atNextKey;
  };

  explicit GuardWatchdog(Environment environment) : environment_(std::move(environment)) {}

  void start();
  void stop();

  /// The guard has reported an event, or has only answered.
  void heard(bool isAnswer);

 private:
  void beat();
  void sleep();

  Environment environment_;
  std::unique_ptr<Timer> timer_;
  bool isAsleep_ = false;
  int unanswered_ = 0;  // pings since the guard last said anything
  int quiet_ = 0;       // beats since it last reported an event
};

}  // namespace kivra::x11
