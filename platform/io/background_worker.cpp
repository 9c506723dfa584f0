#include "platform/io/background_worker.h"

namespace kivra {

BackgroundWorker::BackgroundWorker(CallOnMainThread callOnMainThread)
    : callOnMainThread_(std::move(callOnMainThread)), thread_([this] { work(); }) {}

BackgroundWorker::~BackgroundWorker() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
    queue_.clear();
    current_.request_stop();
  }
  changed_.notify_all();
  thread_.join();
}

std::stop_source BackgroundWorker::runJob(Job job, std::function<void()> done) {
  Queued queued{.number = ++count_, .stop = {}, .job = std::move(job)};
  auto stop = queued.stop;
  pending_->emplace(queued.number, std::move(done));
  {
    const std::lock_guard lock(mutex_);
    queue_.push_back(std::move(queued));
  }
  changed_.notify_all();
  return stop;
}

void BackgroundWorker::work() {
  for (;;) {
    Queued queued;
    {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [this] { return isEnding_ || !queue_.empty(); });
      if (isEnding_) return;
      queued = std::move(queue_.front());
      queue_.pop_front();
      current_ = queued.stop;
    }
    queued.job(queued.stop.get_token());
    queued.job = nullptr;
    callOnMainThread_([weak = weakPending_, number = queued.number] {
      const auto pending = weak.lock();
      if (!pending) return;
      const auto found = pending->extract(number);
      if (!found.empty()) found.mapped()();
    });
  }
}

}  // namespace kivra
