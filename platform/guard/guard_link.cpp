#include "platform/guard/guard_link.h"

#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace kivra::guard {

namespace {

// Where the guard finds its end of the socket.
constexpr int guardFd = 3;

// Far more than anybody decides while a guard that does not read is ended.
constexpr std::size_t longestBacklog = 4096;

void append(std::vector<std::byte>& bytes, std::span<const std::byte> more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

}  // namespace

bool GuardLink::start() {
  stop();
  return door_ ? door_->open() : spawn();
}

bool GuardLink::meet() {
  if (fd_ >= 0) return false;
  const int fd = door_->admit();
  if (fd >= 0) begin(fd);
  return fd >= 0;
}

void GuardLink::begin(int fd) {
  fd_ = fd;
  isGone_ = false;
  greeting_ = {};
  backlog_.clear();
  sendRecord(fd_, FrameKind::hello, Hello{});
}

bool GuardLink::spawn() {
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return false;
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
  begin(ends[0]);
  return true;
}

void GuardLink::stop() {
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
  isGone_ = true;
  reap();
}

// One that has not ended yet is asked for later.
void GuardLink::reap() {
  std::erase_if(processes_,
                [](pid_t process) { return ::waitpid(process, nullptr, WNOHANG) != 0; });
}

template <class T>
void GuardLink::sendRecords(FrameKind kind, Order order, std::span<const T> records) {
  if (isGone_ || backlog_.size() >= longestBacklog) return;
  do {
    const auto part = records.first(std::min(records.size(), maxRecords));
    records = records.subspan(part.size());
    order.more = records.empty() ? 0 : 1;
    auto& waiting = backlog_.emplace_back(Waiting{kind, {}});
    append(waiting.bytes, std::as_bytes(std::span(&order, 1)));
    append(waiting.bytes, std::as_bytes(part));
  } while (!records.empty());
  flush();
}

void GuardLink::send(const Order& order) { sendRecords<PostedKey>(FrameKind::order, order, {}); }

void GuardLink::send(const Order& order, const std::vector<PostedKey>& keys) {
  sendRecords<PostedKey>(FrameKind::postedKeys, order, keys);
}

void GuardLink::send(const Order& order, const std::vector<Chord>& chords) {
  sendRecords<Chord>(FrameKind::chords, order, chords);
}

void GuardLink::flush() {
  while (!backlog_.empty()) {
    const auto& [kind, bytes] = backlog_.front();
    const auto result = sendFrame(fd_, kind, bytes, {});
    if (result == SendResult::wouldBlock) return;
    if (result == SendResult::closed) {
      backlog_.clear();
      return;
    }
    backlog_.pop_front();
  }
}

std::optional<Report> GuardLink::receive() {
  // Those that ran before this one.
  if (processes_.size() > 1) reap();
  while (fd_ >= 0 && !isGone_) {
    const auto received = receiveFrame(fd_);
    if (received.isClosed) isGone_ = true;
    if (!received.frame) return std::nullopt;
    // Nothing that a guard of another build says is read.
    if (!greeting_.accepts(*received.frame)) isGone_ = true;
    if (!isGone_ && received.frame->kind == FrameKind::report) {
      if (const auto report = received.frame->head<Report>()) return report;
    }
  }
  return std::nullopt;
}

}  // namespace kivra::guard
