#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>
#include <utility>

namespace kivra {

/// Calls a block on the main thread, from the run loop. May be called on any thread.
using CallOnMainThread = std::function<void(std::function<void()>)>;

/// A thread that does blocking jobs one after another. Belongs to the main thread.
class BackgroundWorker {
 public:
  explicit BackgroundWorker(CallOnMainThread callOnMainThread);
  /// Stops the job under way, and forgets what was to be done with it and the others.
  ~BackgroundWorker();
  BackgroundWorker(const BackgroundWorker&) = delete;
  BackgroundWorker& operator=(const BackgroundWorker&) = delete;

  /// Does the job on the thread and then `done` with its result on the main thread. The job ends
  /// soon once the answer is asked to stop; `done` is called all the same.
  template <class Result>
  std::stop_source run(std::function<Result(const std::stop_token&)> job,
                       std::function<void(Result)> done) {
    const auto result = std::make_shared<Result>();
    return runJob(
        [result, job = std::move(job)](const std::stop_token& stop) { *result = job(stop); },
        [result, done = std::move(done)] { done(std::move(*result)); });
  }

 private:
  using Job = std::function<void(const std::stop_token&)>;
  /// What is to be done on the main thread, where it also has to be destroyed.
  using Pending = std::map<std::uint64_t, std::function<void()>>;

  struct Queued {
    std::uint64_t number = 0;
    std::stop_source stop;
    Job job;
  };

  std::stop_source runJob(Job job, std::function<void()> done);
  void work();

  CallOnMainThread callOnMainThread_;
  std::shared_ptr<Pending> pending_ = std::make_shared<Pending>();
  std::weak_ptr<Pending> weakPending_ = pending_;
  std::uint64_t count_ = 0;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Queued> queue_;
  std::stop_source current_;
  bool isEnding_ = false;
  std::thread thread_;
};

}  // namespace kivra
