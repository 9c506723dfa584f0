#include "platform/x11/guard_watchdog.h"

#include <chrono>

namespace kivra::x11 {

namespace {

using namespace std::chrono_literals;

// A guard that is stopped must not keep the keyboard for longer than users take it to be slow.
constexpr auto interval = 300ms;

// One that only waits for the processor gets more time: with it go the keys that wait behind a
// decision. On two cores with six busy programs a second was not enough.
constexpr int mostUnanswered = 10;

// Typing pauses for less than three seconds; falling asleep costs the server a request.
constexpr int mostQuiet = 10;

}  // namespace

void GuardWatchdog::start() {
  isAsleep_ = false;
  quiet_ = 0;
  unanswered_ = 1;
  environment_.ping();
  timer_ = environment_.runLoop.scheduleRepeatingTimer(interval, [this] { beat(); });
}

void GuardWatchdog::stop() {
  isAsleep_ = false;
  timer_.reset();
}

void GuardWatchdog::heard(bool isAnswer) {
  unanswered_ = 0;
  if (!isAnswer) quiet_ = 0;
}

void GuardWatchdog::beat() {
  // An answer may wait unread when this process has been busy or stopped.
  environment_.readReports();
  if (!timer_) return;  // the guard is gone for good
  const auto isStopped = unanswered_ > 0 && environment_.isStopped();
  if (isStopped || unanswered_ >= mostUnanswered) {
    environment_.bite();
  } else if (++quiet_ > mostQuiet && unanswered_ == 0) {
    sleep();
  } else {
    ++unanswered_;
    environment_.ping();
  }
}

void GuardWatchdog::sleep() {
  timer_.reset();
  isAsleep_ = true;
  environment_.atNextKey([this] {
    if (isAsleep_) start();
  });
}

}  // namespace kivra::x11
