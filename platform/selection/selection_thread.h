#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/selection/selection.h"

namespace kivra {

/// The thread that the clipboard lives on: other programs are served whatever the main thread is
/// waiting for, the program's own windows among them.
class SelectionThread {
 public:
  using Make = std::function<std::unique_ptr<Selection>()>;
  using Job = std::function<void(Selection&)>;

  /// `make` is called there.
  explicit SelectionThread(Make make);
  /// Ends the thread after the jobs that it has.
  ~SelectionThread();
  SelectionThread(const SelectionThread&) = delete;
  SelectionThread& operator=(const SelectionThread&) = delete;

  /// Has the job done there, after those given before.
  void post(Job job);

 private:
  void run(const Make& make);
  std::deque<Job> takeJobs();
  void wake() const;

  int wakeFd_;
  std::mutex mutex_;
  std::deque<Job> jobs_;
  bool isEnding_ = false;
  std::thread thread_;
};

}  // namespace kivra
