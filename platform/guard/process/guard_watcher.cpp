#include "platform/guard/process/guard_watcher.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace kivra::guard {

namespace {

using namespace std::chrono_literals;

constexpr auto round = 500ms;

// Typing pauses for less than this many rounds; to wake up costs a system call.
constexpr int mostQuietRounds = 10;

}  // namespace

bool GuardWatcher::watch() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGCHLD);
  const int signalFd = ::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
  while (!hasEnded()) {
    if (stoppedSince_ && Clock::now() - *stoppedSince_ >= stoppedTime) goOn();
    const auto isServed = wait(signalFd);
    if (isHung() || !isServed) ::kill(guard_, SIGKILL);
  }
  ::close(signalFd);
  return wasKilled_;
}

void GuardWatcher::goOn() {
  const auto now = Clock::now();
  const auto isStoppedAgain = continued_ && now - *continued_ < insistedTime;
  continued_ = now;
  ::kill(guard_, isStoppedAgain ? SIGKILL : SIGCONT);
}

bool GuardWatcher::hasEnded() {
  constexpr int changes = WEXITED | WSTOPPED | WCONTINUED | WNOHANG;
  siginfo_t info{};
  for (;;) {
    if (::waitid(P_PID, static_cast<id_t>(guard_), &info, changes) != 0) return errno != EINTR;
    if (info.si_pid != guard_) return false;
    if (info.si_code == CLD_STOPPED) {
      stoppedSince_ = Clock::now();
    } else if (info.si_code == CLD_CONTINUED) {
      stoppedSince_.reset();
    } else {
      wasKilled_ = info.si_code != CLD_EXITED;
      return true;
    }
    info = {};
  }
}

bool GuardWatcher::isHung() const {
  const auto time = heartbeat_.workTime();
  return !stoppedSince_ && time && *time >= hungTime;
}

int GuardWatcher::timeout() const {
  if (stoppedSince_) return static_cast<int>(stoppedTime.count() / 6);
  return isAsleep_ ? -1 : static_cast<int>(round.count());
}

bool GuardWatcher::wait(int signalFd) {
  std::array<pollfd, 3> waited = {{{.fd = signalFd, .events = POLLIN, .revents = 0},
                                   {.fd = heartbeat_.wakeFd(), .events = POLLIN, .revents = 0},
                                   {.fd = rescue_.fd(), .events = POLLIN, .revents = 0}}};
  const auto count = ::poll(waited.data(), waited.size(), timeout());
  if ((waited[0].revents & POLLIN) != 0) {
    signalfd_siginfo info;
    while (::read(signalFd, &info, sizeof info) > 0) {
    }
  }
  if ((waited[1].revents & POLLIN) != 0) {
    heartbeat_.wakeUp();
    isAsleep_ = false;
    quietRounds_ = 0;
  } else if (count == 0 && !heartbeat_.workTime() && ++quietRounds_ > mostQuietRounds) {
    isAsleep_ = heartbeat_.sleep();
  }
  return waited[2].revents == 0 || rescue_.readEvents();
}

}  // namespace kivra::guard
