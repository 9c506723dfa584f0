#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "platform/x11/clipboard_selection.h"

namespace kivra::x11 {

/// The thread that the clipboard selection lives on: other programs are served whatever the main
/// thread is waiting for, the program's own windows among them.
class SelectionThread {
 public:
  using Job = std::function<void(ClipboardSelection&)>;

  SelectionThread(std::string display, const SelectionReader::Waits& waits);
  /// Ends the thread after the jobs that it has.
  ~SelectionThread();
  SelectionThread(const SelectionThread&) = delete;
  SelectionThread& operator=(const SelectionThread&) = delete;

  /// Has the job done there, after those given before.
  void post(Job job);

 private:
  void run(const std::string& display, const SelectionReader::Waits& waits);
  std::deque<Job> takeJobs();
  void wake() const;

  int wakeFd_;
  std::mutex mutex_;
  std::deque<Job> jobs_;
  bool isEnding_ = false;
  std::thread thread_;
};

}  // namespace kivra::x11
