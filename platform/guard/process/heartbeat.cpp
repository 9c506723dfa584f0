#include "platform/guard/process/heartbeat.h"

#include <sys/eventfd.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <new>
#include <system_error>

namespace kivra::guard {

namespace {

std::int64_t nowMs() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

}  // namespace

Heartbeat& Heartbeat::shared() {
  void* const memory =
      ::mmap(nullptr, sizeof(Heartbeat), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  const int wakeFd = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  if (memory == MAP_FAILED || wakeFd < 0) {
    throw std::system_error(errno, std::generic_category(), "heartbeat");
  }
  return *new (memory) Heartbeat(wakeFd);
}

void Heartbeat::beginWork() {
  // In order with the look at the watcher's sleep: one of the two must see the other.
  busySince_.store(nowMs());
  if (!isWatcherAsleep_.load() || !isWatcherAsleep_.exchange(false)) return;
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(wakeFd_, &one, sizeof one);
}

std::optional<std::chrono::milliseconds> Heartbeat::workTime() const {
  const auto since = busySince_.load();
  if (since == 0) return std::nullopt;
  return std::chrono::milliseconds(nowMs() - since);
}

bool Heartbeat::sleep() {
  isWatcherAsleep_.store(true);
  return !workTime();
}

void Heartbeat::wakeUp() {
  std::uint64_t count = 0;
  [[maybe_unused]] const auto size = ::read(wakeFd_, &count, sizeof count);
}

}  // namespace kivra::guard
