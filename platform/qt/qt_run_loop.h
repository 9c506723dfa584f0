#pragma once

#include "platform/run_loop.h"

namespace kivra::qt {

/// The event loop of the thread's QCoreApplication, which must exist.
class QtRunLoop : public RunLoop {
 public:
  std::unique_ptr<Timer> scheduleRepeatingTimer(std::chrono::microseconds interval,
                                                std::function<void()> block) override;
  void asyncAfter(std::chrono::microseconds delay, std::function<void()> block) override;
  void runFor(std::chrono::microseconds duration) override;

  /// Calls the function whenever the descriptor can be read, for as long as the answer is kept.
  std::shared_ptr<void> watch(int fd, std::function<void()> onReadable);
};

}  // namespace kivra::qt
