#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "platform/guard/descriptor_message.h"
#include "platform/guard/process/guard_channel.h"

namespace kivra::guard {

/// Plays the guards that are started while it lives: each program lends its end of the socket.
class LentGuards {
 public:
  /// A guard's end of the socket; the guard ends with it.
  struct Guard {
    explicit Guard(int fd) : channel(fd) {}
    ~Guard() { ::close(channel.fd()); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

    GuardChannel channel;
  };

  LentGuards() {
    // Inherited by the programs.
    ::socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends_.data());
    ::setenv("KIVRA_LENDING_FD", std::to_string(ends_[1]).c_str(), 1);
  }
  ~LentGuards() {
    for (const auto end : ends_) ::close(end);
  }
  LentGuards(const LentGuards&) = delete;
  LentGuards& operator=(const LentGuards&) = delete;

  /// The guard that has been started; none when it does not come.
  std::unique_ptr<Guard> next() {
    constexpr int patience = 20'000;  // ms
    pollfd waited{.fd = ends_[0], .events = POLLIN, .revents = 0};
    if (::poll(&waited, 1, patience) != 1) return nullptr;
    DescriptorMessage lent;
    if (::recvmsg(ends_[0], &lent.message, MSG_CMSG_CLOEXEC) != 1) return nullptr;
    int fd = -1;
    std::memcpy(&fd, CMSG_DATA(CMSG_FIRSTHDR(&lent.message)), sizeof fd);
    return std::make_unique<Guard>(fd);
  }

 private:
  std::array<int, 2> ends_{};
};

}  // namespace kivra::guard
