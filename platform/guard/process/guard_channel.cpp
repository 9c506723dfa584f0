#include "platform/guard/process/guard_channel.h"

#include <utility>

namespace kivra::guard {

namespace {

// What a program can mean: more is one gone wrong.
constexpr std::size_t longestOrder = 100'000;

bool isOrder(FrameKind kind) {
  return kind == FrameKind::order || kind == FrameKind::postedKeys || kind == FrameKind::chords;
}

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
  if (sendRecord(fd_, FrameKind::hello, Hello{}) == SendResult::closed) isOpen_ = false;
}

void GuardChannel::flush() {
  while (!backlog_.empty() && sendNow(backlog_.front())) backlog_.pop_front();
}

bool GuardChannel::sendNow(const Report& report) {
  const auto result = sendRecord(fd_, FrameKind::report, report);
  if (result == SendResult::closed) isOpen_ = false;
  return result == SendResult::sent;
}

std::optional<OrderMessage> GuardChannel::receive() {
  while (isOpen_) {
    const auto received = receiveFrame(fd_);
    if (received.isClosed) isOpen_ = false;
    if (!received.frame) return std::nullopt;
    if (auto message = wholeOrder(*received.frame)) return message;
  }
  return std::nullopt;
}

std::optional<OrderMessage> GuardChannel::wholeOrder(const Frame& frame) {
  isOpen_ = greeting_.accepts(frame);
  const auto order = frame.head<Order>();
  if (!isOpen_ || !isOrder(frame.kind) || !order) return std::nullopt;
  // Whatever stands between the parts of a list begins anew.
  const auto goesOn =
      partial_ && partial_->order.kind == order->kind && partial_->order.number == order->number;
  if (!goesOn) partial_.emplace();
  partial_->order = *order;
  if (frame.kind == FrameKind::postedKeys) {
    append(partial_->keys, frame.records<PostedKey>(sizeof(Order)));
  } else if (frame.kind == FrameKind::chords) {
    append(partial_->chords, frame.records<Chord>(sizeof(Order)));
  }
  isOpen_ = partial_->keys.size() + partial_->chords.size() <= longestOrder;
  if (!isOpen_ || order->more != 0) return std::nullopt;
  return std::exchange(partial_, std::nullopt);
}

}  // namespace kivra::guard
