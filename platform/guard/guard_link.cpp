#include "platform/guard/guard_link.h"

#include <spawn.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <span>

#include "platform/guard/protocol/frame.h"

namespace kivra::guard {

namespace {

// Where the guard finds its end of the socket.
constexpr int guardFd = 3;

template <class T>
void sendRecords(int fd, FrameKind kind, Order order, std::span<const T> records) {
  do {
    const auto part = records.first(std::min(records.size(), maxRecords));
    records = records.subspan(part.size());
    order.more = !records.empty();
    const auto head = std::as_bytes(std::span(&order, 1));
    if (sendFrame(fd, kind, head, std::as_bytes(part), true) != SendResult::sent) return;
  } while (!records.empty());
}

}  // namespace

bool GuardLink::start() {
  stop();
  if (!spawn()) return false;
  sendRecord(fd_, FrameKind::hello, Hello{}, true);
  return true;
}

bool GuardLink::spawn() {
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return false;
  // A guard that does not read must not keep the program.
  const timeval limit{.tv_sec = 0, .tv_usec = 500'000};
  ::setsockopt(ends[0], SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], guardFd);
  // Libraries have files open that are not closed by themselves, dictionaries at this very moment.
  posix_spawn_file_actions_addclosefrom_np(&actions, guardFd + 1);
  // Not the program's own name: what is sent to all processes of that name must not stop both.
  std::array<char, 15> name{"keyboard-watch"};
  std::array<char*, 2> arguments = {name.data(), nullptr};
  pid_t process = -1;
  const auto error =
      ::posix_spawn(&process, program_.c_str(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  if (error != 0) {
    ::close(ends[0]);
    return false;
  }
  processes_.push_back(process);
  fd_ = ends[0];
  isGone_ = false;
  isForeignBuild_ = false;
  return true;
}

void GuardLink::stop() {
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
  isGone_ = true;
  reap();
}

// One that has not ended yet is asked for at the next start, or left to the system.
void GuardLink::reap() {
  std::erase_if(processes_,
                [](pid_t process) { return ::waitpid(process, nullptr, WNOHANG) != 0; });
}

void GuardLink::send(const Order& order) {
  if (fd_ >= 0) sendRecord(fd_, FrameKind::order, order, true);
}

void GuardLink::send(Order order, const std::vector<PostedKey>& keys) {
  if (fd_ >= 0) sendRecords<PostedKey>(fd_, FrameKind::postedKeys, order, keys);
}

void GuardLink::send(Order order, const std::vector<Chord>& chords) {
  if (fd_ >= 0) sendRecords<Chord>(fd_, FrameKind::chords, order, chords);
}

std::optional<Report> GuardLink::receive() {
  while (fd_ >= 0 && !isGone_) {
    const auto received = receiveFrame(fd_);
    if (received.isClosed) isGone_ = true;
    if (!received.frame) return std::nullopt;
    if (received.frame->kind == FrameKind::report) return received.frame->head<Report>();
    if (received.frame->kind == FrameKind::hello) {
      const auto hello = received.frame->head<Hello>();
      isForeignBuild_ = !hello || hello->version != protocolVersion;
    }
  }
  return std::nullopt;
}

}  // namespace kivra::guard
