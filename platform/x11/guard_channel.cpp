#include "platform/x11/guard_channel.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>

namespace kivra::x11 {

namespace {

constexpr std::size_t largestPacket = sizeof(Order) + maxRecords * sizeof(PostedKey);

template <class T>
void readRecords(const std::byte* bytes, std::size_t size, std::uint32_t count,
                 std::vector<T>& records) {
  if (std::size_t{count} * sizeof(T) > size) return;
  records.resize(count);
  if (count > 0) std::memcpy(records.data(), bytes, count * sizeof(T));
}

}  // namespace

bool GuardChannel::send(const Report& report) {
  // Far more than the decision time lets through before the tap is off.
  constexpr std::size_t longestBacklog = 20000;
  flush();
  if (backlog_.empty() && sendNow(report)) return true;
  if (!isOpen_ || backlog_.size() >= longestBacklog) return false;
  backlog_.push_back(report);
  return true;
}

void GuardChannel::flush() {
  while (!backlog_.empty() && sendNow(backlog_.front())) backlog_.pop_front();
}

bool GuardChannel::sendNow(const Report& report) {
  const auto sent = ::send(fd_, &report, sizeof report, MSG_DONTWAIT | MSG_NOSIGNAL);
  if (sent < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) isOpen_ = false;
  return sent == static_cast<ssize_t>(sizeof report);
}

std::optional<OrderMessage> GuardChannel::receive(std::chrono::milliseconds timeout) {
  const auto writable = static_cast<short>(hasBacklog() ? POLLOUT : 0);
  pollfd descriptor{.fd = fd_, .events = static_cast<short>(POLLIN | writable), .revents = 0};
  if (::poll(&descriptor, 1, static_cast<int>(timeout.count())) <= 0) return std::nullopt;
  if ((descriptor.revents & POLLOUT) != 0) flush();
  if ((descriptor.revents & ~POLLOUT) == 0) return std::nullopt;
  std::array<std::byte, largestPacket> packet;
  const auto size = ::recv(fd_, packet.data(), packet.size(), MSG_DONTWAIT);
  if (size == 0 || (size < 0 && errno != EAGAIN && errno != EINTR)) isOpen_ = false;
  if (size < static_cast<ssize_t>(sizeof(Order))) return std::nullopt;
  OrderMessage message;
  std::memcpy(&message.order, packet.data(), sizeof(Order));
  const auto* records = packet.data() + sizeof(Order);
  const auto length = static_cast<std::size_t>(size) - sizeof(Order);
  if (message.order.kind == OrderKind::setConsumable) {
    readRecords(records, length, message.order.count, message.chords);
  } else {
    readRecords(records, length, message.order.count, message.keys);
  }
  return message;
}

}  // namespace kivra::x11
