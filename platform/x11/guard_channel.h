#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "platform/x11/guard_protocol.h"

namespace kivra::x11 {

/// An order with its records.
struct OrderMessage {
  Order order;
  std::vector<PostedKey> keys;
  std::vector<Chord> chords;
};

/// The guard's end of the socket. `receive` answers nothing both when there is no order yet and
/// when the program is gone; `isOpen` tells them apart.
class GuardChannel {
 public:
  explicit GuardChannel(int fd) : fd_(fd) {}

  int fd() const { return fd_; }
  bool isOpen() const { return isOpen_; }

  /// Sends now or, while the program is slow to read, later; never waits. False when the program
  /// has not read for so long that the report is dropped, or is gone.
  bool send(const Report& report);

  /// Sends what had to wait, as far as possible.
  void flush();
  bool hasBacklog() const { return !backlog_.empty(); }

  /// The next order, waited for at most `timeout`.
  std::optional<OrderMessage> receive(std::chrono::milliseconds timeout);

 private:
  bool sendNow(const Report& report);

  int fd_;
  bool isOpen_ = true;
  std::deque<Report> backlog_;
};

}  // namespace kivra::x11
