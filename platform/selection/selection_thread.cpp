#include "platform/selection/selection_thread.h"

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <utility>

namespace kivra {

SelectionThread::SelectionThread(Make make)
    : wakeFd_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      thread_([this, called = std::move(make)] { run(called); }) {}

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

void SelectionThread::run(const Make& make) {
  // Writing to a program that has gone is an error to be answered, not an end.
  sigset_t pipe;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
  const auto selection = make();
  for (;;) {
    std::array<pollfd, 2> descriptors{{{.fd = wakeFd_, .events = POLLIN, .revents = 0},
                                       {.fd = selection->fd(), .events = POLLIN, .revents = 0}}};
    ::poll(descriptors.data(), descriptors.size(), -1);
    const auto jobs = takeJobs();
    for (const auto& job : jobs) job(*selection);
    selection->handleEvents();
    const std::lock_guard lock(mutex_);
    if (isEnding_ && jobs_.empty()) return;
  }
}

}  // namespace kivra
