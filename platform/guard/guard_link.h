#pragma once

#include <sys/types.h>

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/guard/guard_door.h"
#include "platform/guard/protocol/frame.h"

namespace kivra::guard {

/// The program's end of the keyboard guard: starts the process, or meets one that the desktop has
/// started, and talks to it. A guard that was started here ends by itself when the link is closed.
class GuardLink {
 public:
  /// `program` is the guard's executable; with a door guards are not started, but come there.
  explicit GuardLink(std::string program, std::unique_ptr<GuardDoor> door = nullptr)
      : program_(std::move(program)), door_(std::move(door)) {}
  ~GuardLink() { stop(); }
  GuardLink(const GuardLink&) = delete;
  GuardLink& operator=(const GuardLink&) = delete;

  /// Starts a guard, which reports when it is ready, or opens the door; false when that cannot be.
  /// Lets go of the one that ran before.
  bool start();
  /// Guards are met, not started.
  bool isAwaiting() const { return door_ != nullptr; }
  /// Readable when somebody has come to the door.
  int doorFd() const { return door_->fd(); }
  /// Meets the guard that has come, unless there is one; false when none has.
  bool meet();
  void stop();

  /// -1 while no guard runs.
  int fd() const { return fd_; }

  /// Sends now or, while the guard is slow to read, at a later `flush`; never waits. Orders to a
  /// guard that is gone, or that has not read thousands, are lost.
  void send(const Order& order);
  void send(const Order& order, const std::vector<PostedKey>& keys);
  void send(const Order& order, const std::vector<Chord>& chords);

  /// Sends what had to wait, as far as possible.
  void flush();
  bool hasBacklog() const { return !backlog_.empty(); }

  /// The next report, without waiting.
  std::optional<Report> receive();
  /// The guard has closed its end.
  bool isGone() const { return isGone_; }
  /// The guard is of another build than the program.
  bool isForeignBuild() const { return greeting_.isForeign(); }

 private:
  struct Waiting {
    FrameKind kind = FrameKind::order;
    std::vector<std::byte> bytes;
  };

  bool spawn();
  void begin(int fd);
  void reap();
  template <class T>
  void sendRecords(FrameKind kind, Order order, std::span<const T> records);

  std::string program_;
  std::unique_ptr<GuardDoor> door_;
  int fd_ = -1;
  std::vector<pid_t> processes_;  // started and not yet known to have ended
  bool isGone_ = true;
  Greeting greeting_;
  std::deque<Waiting> backlog_;
};

}  // namespace kivra::guard
