#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/x11/guard_protocol.h"

namespace kivra::x11 {

/// The program's end of the keyboard guard: starts the process, talks to it, ends it.
class GuardLink {
 public:
  /// `program` is the guard's executable.
  explicit GuardLink(std::string program) : program_(std::move(program)) {}
  ~GuardLink();
  GuardLink(const GuardLink&) = delete;
  GuardLink& operator=(const GuardLink&) = delete;

  /// Starts a guard and waits until it is ready; false when it cannot do its work. Ends the one
  /// that ran before.
  bool start();
  void stop();

  /// -1 while no guard runs.
  int fd() const { return fd_; }

  /// Orders to a guard that is gone are lost.
  void send(const Order& order);
  void send(Order order, const std::vector<PostedKey>& keys);
  void send(Order order, const std::vector<Chord>& chords);

  /// The next report, without waiting. `isGone` is set once the guard has closed its end.
  std::optional<Report> receive();
  bool isGone() const { return isGone_; }

  /// A signal has stopped the guard's process.
  bool isStopped() const;

 private:
  bool spawn();

  std::string program_;
  int fd_ = -1;
  pid_t process_ = -1;
  bool isGone_ = true;
};

}  // namespace kivra::x11
