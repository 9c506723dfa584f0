#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
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
    // The system chooses a name that is no file's.
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    socklen_t size = sizeof address.sun_family;
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    if (::bind(socket_, general, size) != 0) throw std::runtime_error("no socket for guards");
    size = sizeof address;
    ::getsockname(socket_, general, &size);
    const auto length = size - offsetof(sockaddr_un, sun_path) - 1;
    ::setenv("KIVRA_LENDING_NAME", std::string(&address.sun_path[1], length).c_str(), 1);
  }
  ~LentGuards() { ::close(socket_); }
  LentGuards(const LentGuards&) = delete;
  LentGuards& operator=(const LentGuards&) = delete;

  /// The guard that has been started; none when it does not come.
  std::unique_ptr<Guard> next() {
    constexpr int patience = 20'000;  // ms
    pollfd waited{.fd = socket_, .events = POLLIN, .revents = 0};
    if (::poll(&waited, 1, patience) != 1) return nullptr;
    DescriptorMessage lent;
    if (::recvmsg(socket_, &lent.message, MSG_CMSG_CLOEXEC) != 1) return nullptr;
    int fd = -1;
    std::memcpy(&fd, CMSG_DATA(CMSG_FIRSTHDR(&lent.message)), sizeof fd);
    return std::make_unique<Guard>(fd);
  }

 private:
  int socket_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

}  // namespace kivra::guard
