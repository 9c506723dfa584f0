#include "platform/guard/protocol/frame.h"

#include <sys/socket.h>
#include <sys/uio.h>

#include <array>
#include <cerrno>

namespace kivra::guard {

namespace {

constexpr std::size_t largestPayload = sizeof(Order) + maxRecords * sizeof(PostedKey);

iovec vectorOf(std::span<const std::byte> bytes) {
  // sendmsg only reads.
  return {.iov_base = const_cast<std::byte*>(bytes.data()), .iov_len = bytes.size()};
}

}  // namespace

SendResult sendFrame(int fd, FrameKind kind, std::span<const std::byte> record,
                     std::span<const std::byte> rest) {
  const FrameHeader header{.kind = kind,
                           .length = static_cast<std::uint32_t>(record.size() + rest.size())};
  std::array parts = {vectorOf(std::as_bytes(std::span(&header, 1))), vectorOf(record),
                      vectorOf(rest)};
  msghdr message{};
  message.msg_iov = parts.data();
  message.msg_iovlen = parts.size();
  while (::sendmsg(fd, &message, MSG_NOSIGNAL | MSG_DONTWAIT) < 0) {
    if (errno == EAGAIN || errno == EWOULDBLOCK) return SendResult::wouldBlock;
    if (errno != EINTR) return SendResult::closed;
  }
  return SendResult::sent;
}

Received receiveFrame(int fd) {
  std::array<std::byte, sizeof(FrameHeader) + largestPayload> packet;
  auto size = ::recv(fd, packet.data(), packet.size(), MSG_DONTWAIT);
  // Said once by an end that is gone and had not read everything, before what it had sent itself.
  if (size < 0 && errno == ECONNRESET) {
    size = ::recv(fd, packet.data(), packet.size(), MSG_DONTWAIT);
  }
  if (size == 0) return {.frame = {}, .isClosed = true};
  if (size < 0) {
    const auto isIdle = errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
    return {.frame = {}, .isClosed = !isIdle};
  }
  FrameHeader header;
  const auto length = static_cast<std::size_t>(size);
  // Whoever sends what is no frame cannot be understood in anything.
  if (length < sizeof header) return {.frame = {}, .isClosed = true};
  std::memcpy(&header, packet.data(), sizeof header);
  if (header.length != length - sizeof header) return {.frame = {}, .isClosed = true};
  return {.frame = Frame{.kind = header.kind,
                         .payload = {packet.begin() + sizeof header,
                                     packet.begin() + static_cast<std::ptrdiff_t>(length)}},
          .isClosed = false};
}

bool Greeting::accepts(const Frame& frame) {
  if (isForeign_ || (isHeard_ && frame.kind != FrameKind::hello)) return !isForeign_;
  const auto hello = frame.head<Hello>();
  isHeard_ = frame.kind == FrameKind::hello && hello && hello->version == protocolVersion;
  isForeign_ = !isHeard_;
  return isHeard_;
}

}  // namespace kivra::guard
