#include "platform/embedded/virtual_time.h"

#include <algorithm>

namespace kivra::embedded {

class VirtualTime::RepeatingTimer : public Timer {
 public:
  const std::shared_ptr<const bool>& alive() const { return alive_; }

 private:
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

void VirtualTime::sleep(std::chrono::microseconds duration) {
  now_ += duration;
  effects_.report([&] { return Json{{"sleep", duration.count()}}; });
}

std::unique_ptr<Timer> VirtualTime::scheduleRepeatingTimer(std::chrono::microseconds interval,
                                                           std::function<void()> block) {
  auto timer = std::make_unique<RepeatingTimer>();
  enqueueRepetition(timer->alive(), now_ + interval, interval, block);
  return timer;
}

void VirtualTime::enqueueRepetition(const std::shared_ptr<const bool>& alive,
                                    std::chrono::microseconds due,
                                    std::chrono::microseconds interval,
                                    const std::function<void()>& block) {
  enqueue(due, [this, weak = std::weak_ptr(alive), due, interval, block] {
    if (const auto stillAlive = weak.lock()) {
      enqueueRepetition(stillAlive, due + interval, interval, block);
    } else {
      return;
    }
    block();
  });
}

void VirtualTime::asyncAfter(std::chrono::microseconds delay, std::function<void()> block) {
  enqueue(now_ + delay, std::move(block));
}

void VirtualTime::enqueue(std::chrono::microseconds due, std::function<void()> block) {
  queue_.emplace(Key(due, queued_++), std::move(block));
}

// What a dropped block owned may queue something more as it goes.
void VirtualTime::dropAll() {
  while (!queue_.empty()) {
    const auto dropped = std::exchange(queue_, {});
  }
}

void VirtualTime::runFor(std::chrono::microseconds duration) {
  const auto end = now_ + duration;
  while (!queue_.empty() && queue_.begin()->first.first <= std::max(end, now_)) {
    const auto next = queue_.extract(queue_.begin());
    now_ = std::max(now_, next.key().first);
    next.mapped()();
  }
  now_ = std::max(now_, end);
}

}  // namespace kivra::embedded
