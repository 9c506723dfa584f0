#include "platform/x11/selection_thread.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <utility>

namespace kivra::x11 {

SelectionThread::SelectionThread(std::string display, const SelectionReader::Waits& waits)
    : wakeFd_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      thread_([this, name = std::move(display), waits] { run(name, waits); }) {}

SelectionThread::~SelectionThread() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  wake();
  thread_.join();
  ::close(wakeFd_);
}

void SelectionThread::post(Job job) {
  {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
  }
  wake();
}

void SelectionThread::wake() const {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(wakeFd_, &one, sizeof one);
}

std::deque<SelectionThread::Job> SelectionThread::takeJobs() {
  std::uint64_t count = 0;
  [[maybe_unused]] const auto read = ::read(wakeFd_, &count, sizeof count);
  const std::lock_guard lock(mutex_);
  return std::exchange(jobs_, {});
}

void SelectionThread::run(const std::string& display, const SelectionReader::Waits& waits) {
  ClipboardSelection selection(display, waits);
  for (;;) {
    std::array<pollfd, 2> descriptors{{{.fd = wakeFd_, .events = POLLIN, .revents = 0},
                                       {.fd = selection.fd(), .events = POLLIN, .revents = 0}}};
    ::poll(descriptors.data(), descriptors.size(), -1);
    const auto jobs = takeJobs();
    for (const auto& job : jobs) job(selection);
    selection.handleEvents();
    const std::lock_guard lock(mutex_);
    if (isEnding_ && jobs_.empty()) return;
  }
}

}  // namespace kivra::x11
