#pragma once

#include "platform/clock.h"

namespace kivra {

/// Time since the machine started, sleep included, so that changes of the date do not matter.
class SystemClock : public Clock {
 public:
  std::chrono::microseconds now() override;

  /// Returns at once: keys are posted through a server that keeps them in order by itself.
  void sleep(std::chrono::microseconds /*duration*/) override {}
};

}  // namespace kivra
