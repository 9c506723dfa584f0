#include "platform/x11/guard_link.h"

#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>

namespace kivra::x11 {

namespace {

// Where the guard finds its end of the socket.
constexpr int guardFd = 3;

// From the start of the process to the report that it is ready.
constexpr int startTimeout = 3000;  // ms

/// One packet: the order and the records [first, last).
template <class T>
void sendPacket(int fd, const Order& order, const T* first, const T* last) {
  const auto length = static_cast<std::size_t>(last - first) * sizeof(T);
  std::vector<std::byte> packet(sizeof order + length);
  std::memcpy(packet.data(), &order, sizeof order);
  if (length > 0) std::memcpy(packet.data() + sizeof order, first, length);
  while (::send(fd, packet.data(), packet.size(), MSG_NOSIGNAL) < 0 && errno == EINTR) {
  }
}

template <class T>
void sendRecords(int fd, Order order, const std::vector<T>& records) {
  const T* first = records.data();
  const T* const end = first + records.size();
  do {
    const auto count = std::min<std::size_t>(static_cast<std::size_t>(end - first), maxRecords);
    order.count = static_cast<std::uint32_t>(count);
    order.more = first + count != end;
    sendPacket(fd, order, first, first + count);
    first += count;
  } while (first != end);
}

}  // namespace

GuardLink::~GuardLink() { stop(); }

bool GuardLink::start() {
  stop();
  if (!spawn()) return false;
  pollfd descriptor{.fd = fd_, .events = POLLIN, .revents = 0};
  ::poll(&descriptor, 1, startTimeout);
  const auto report = receive();
  if (report && report->kind == ReportKind::ready) return true;
  stop();
  return false;
}

bool GuardLink::spawn() {
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return false;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], guardFd);
  // Not the program's own name: what is sent to all processes of that name must not stop both.
  std::array<char, 15> name{"keyboard-guard"};
  std::array<char*, 2> arguments = {name.data(), nullptr};
  const auto error =
      ::posix_spawn(&process_, program_.c_str(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  fd_ = ends[0];
  isGone_ = false;
  if (error == 0) return true;
  process_ = -1;
  stop();
  return false;
}

void GuardLink::stop() {
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
  isGone_ = true;
  if (process_ <= 0) return;
  // An orderly end takes milliseconds; a guard that is stopped or stuck is killed, whereupon the
  // server thaws the keyboard.
  for (int i = 0; i < 100; ++i) {
    if (::waitpid(process_, nullptr, WNOHANG) != 0) {
      process_ = -1;
      return;
    }
    ::usleep(1000);
  }
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  process_ = -1;
}

bool GuardLink::isStopped() const {
  if (process_ <= 0) return false;
  siginfo_t info{};
  ::waitid(P_PID, static_cast<id_t>(process_), &info, WSTOPPED | WNOHANG | WNOWAIT);
  return info.si_pid == process_;
}

void GuardLink::send(const Order& order) {
  if (fd_ >= 0) sendPacket<Chord>(fd_, order, nullptr, nullptr);
}

void GuardLink::send(Order order, const std::vector<PostedKey>& keys) {
  if (fd_ >= 0) sendRecords(fd_, order, keys);
}

void GuardLink::send(Order order, const std::vector<Chord>& chords) {
  if (fd_ >= 0) sendRecords(fd_, order, chords);
}

std::optional<Report> GuardLink::receive() {
  if (fd_ < 0) return std::nullopt;
  Report report;
  const auto size = ::recv(fd_, &report, sizeof report, MSG_DONTWAIT);
  if (size == static_cast<ssize_t>(sizeof report)) return report;
  if (size == 0 || (size < 0 && errno != EAGAIN && errno != EINTR)) isGone_ = true;
  return std::nullopt;
}

}  // namespace kivra::x11
