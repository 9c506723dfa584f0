#pragma once

#include <chrono>
#include <cstdint>
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

  /// False when the program does not take its messages (its buffer is full) or is gone; never
  /// waits.
  bool send(const Report& report);

  /// The next order, waited for at most `timeout`.
  std::optional<OrderMessage> receive(std::chrono::milliseconds timeout);

 private:
  int fd_;
  bool isOpen_ = true;
};

}  // namespace kivra::x11
