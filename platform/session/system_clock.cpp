#include "platform/session/system_clock.h"

#include <ctime>

namespace kivra {

std::chrono::microseconds SystemClock::now() {
  timespec time{};
  clock_gettime(CLOCK_BOOTTIME, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::duration_cast<std::chrono::microseconds>(
                                                 std::chrono::nanoseconds(time.tv_nsec));
}

}  // namespace kivra
