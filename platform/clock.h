#pragma once

#include <chrono>

namespace kivra {

/// Time, which goes on evenly and while the machine sleeps, and pauses.
class Clock {
 public:
  virtual ~Clock() = default;

  /// Time since an epoch of the backend's choice.
  virtual std::chrono::microseconds now() = 0;

  /// Keeps events posted later this far behind those posted before. A backend whose server orders
  /// them by itself may return at once.
  virtual void sleep(std::chrono::microseconds duration) = 0;
};

}  // namespace kivra
