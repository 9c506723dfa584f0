#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "platform/guard/protocol/frame.h"

namespace kivra::guard {

/// An order with its records, whole however many frames it came in.
struct OrderMessage {
  Order order;
  std::vector<PostedKey> keys;
  std::vector<Chord> chords;
};

/// The guard's end of the socket.
class GuardChannel {
 public:
  /// -1 stands for no socket yet.
  explicit GuardChannel(int fd) : fd_(fd), isOpen_(fd >= 0) {}

  int fd() const { return fd_; }

  /// False once the program is gone, or has turned out to be of another build.
  bool isOpen() const { return isOpen_; }
  /// The program has said that it is one of this build.
  bool hasGreeted() const { return greeting_.isHeard(); }
  bool isForeignBuild() const { return greeting_.isForeign(); }

  /// Sends now or, while the program is slow to read, later; never waits. False when the program
  /// has not read for so long that the report is dropped, or is gone.
  bool send(const Report& report);

  /// Says of which version this end is; the first thing to be sent.
  void sendHello();

  /// Sends what had to wait, as far as possible.
  void flush();
  bool hasBacklog() const { return !backlog_.empty(); }

  /// The next whole order, without waiting. Nothing both when there is none yet and when the
  /// program is gone; `isOpen` tells them apart.
  std::optional<OrderMessage> receive();

 private:
  bool sendNow(const Report& report);
  std::optional<OrderMessage> wholeOrder(const Frame& frame);

  int fd_;
  bool isOpen_;
  Greeting greeting_;
  std::deque<Report> backlog_;
  std::optional<OrderMessage> partial_;
};

}  // namespace kivra::guard
