#include "platform/guard/process/guard_channel.h"

#include <utility>

namespace kivra::guard {

namespace {

template <class Record>
void append(std::vector<Record>& records, const std::vector<Record>& more) {
  records.insert(records.end(), more.begin(), more.end());
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

void GuardChannel::sendHello() {
  if (sendRecord(fd_, FrameKind::hello, Hello{}, false) == SendResult::closed) isOpen_ = false;
}

void GuardChannel::flush() {
  while (!backlog_.empty() && sendNow(backlog_.front())) backlog_.pop_front();
}

bool GuardChannel::sendNow(const Report& report) {
  const auto result = sendRecord(fd_, FrameKind::report, report, false);
  if (result == SendResult::closed) isOpen_ = false;
  return result == SendResult::sent;
}

std::optional<OrderMessage> GuardChannel::receive() {
  while (isOpen_) {
    const auto received = receiveFrame(fd_);
    if (received.isClosed) isOpen_ = false;
    if (!received.frame) return std::nullopt;
    if (auto message = take(*received.frame)) return message;
  }
  return std::nullopt;
}

std::optional<OrderMessage> GuardChannel::take(const Frame& frame) {
  if (frame.kind == FrameKind::hello) {
    const auto hello = frame.head<Hello>();
    isForeignBuild_ = !hello || hello->version != protocolVersion;
    if (isForeignBuild_) isOpen_ = false;
    return std::nullopt;
  }
  const auto order = frame.head<Order>();
  if (!order) return std::nullopt;
  if (!partial_) partial_.emplace();
  partial_->order = *order;
  if (frame.kind == FrameKind::postedKeys) {
    append(partial_->keys, frame.records<PostedKey>(sizeof(Order)));
  } else if (frame.kind == FrameKind::chords) {
    append(partial_->chords, frame.records<Chord>(sizeof(Order)));
  }
  if (order->more) return std::nullopt;
  return std::exchange(partial_, std::nullopt);
}

}  // namespace kivra::guard
