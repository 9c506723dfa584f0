#pragma once

#include <sys/socket.h>

#include <array>

namespace kivra::guard {

/// A message over a socket with room for one descriptor.
struct DescriptorMessage {
  DescriptorMessage() {
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
  }
  DescriptorMessage(const DescriptorMessage&) = delete;
  DescriptorMessage& operator=(const DescriptorMessage&) = delete;

  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
  char byte = 0;
  iovec data{.iov_base = &byte, .iov_len = 1};
  msghdr message{};
};

}  // namespace kivra::guard
