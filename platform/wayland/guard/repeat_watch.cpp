#include "platform/wayland/guard/repeat_watch.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <utility>

namespace kivra::wayland {

RepeatWatch::RepeatWatch()
    : timer_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {}

RepeatWatch::~RepeatWatch() { ::close(timer_); }

void RepeatWatch::press(std::uint16_t evdev) {
  key_ = evdev;
  isArmed_ = false;
}

void RepeatWatch::release(std::uint16_t evdev) {
  if (key_ != evdev) return;
  key_.reset();
  isArmed_ = false;
}

void RepeatWatch::arm() {
  if (std::exchange(isArmed_, true)) return;
  itimerspec time{};
  if (key_) {
    // A tenth early: a release that comes as late as that may reach the application too late.
    const auto wait = std::chrono::nanoseconds(delay_) * 9 / 10;
    time.it_value.tv_sec = static_cast<time_t>(wait.count() / std::nano::den);
    time.it_value.tv_nsec = static_cast<long>(wait.count() % std::nano::den);
  }
  ::timerfd_settime(timer_, 0, &time, nullptr);
}

std::optional<std::uint16_t> RepeatWatch::take() {
  std::uint64_t ticks = 0;
  if (::read(timer_, &ticks, sizeof ticks) <= 0) return std::nullopt;
  return std::exchange(key_, std::nullopt);
}

}  // namespace kivra::wayland
