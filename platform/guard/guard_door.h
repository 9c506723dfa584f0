#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "platform/log.h"

namespace kivra::guard {

/// Where a guard comes to that the desktop has started.
class GuardDoor {
 public:
  /// `place` is that of the socket, `guard` the only executable that is let in: whoever else came
  /// there could read what is typed.
  GuardDoor(std::optional<std::filesystem::path> place, std::string guard, Log& log)
      : place_(std::move(place)), guard_(std::move(guard)), log_(log) {}
  ~GuardDoor();
  GuardDoor(const GuardDoor&) = delete;
  GuardDoor& operator=(const GuardDoor&) = delete;

  /// Listens unless it does; false when the place cannot be made the user's alone.
  bool open();
  /// Readable when somebody has come; -1 while it does not listen.
  int fd() const { return fd_; }
  /// The guard's end of the socket, which the caller closes; -1 when there is none. Others are sent
  /// away, with a line.
  int admit() const;

 private:
  bool isGuard(int fd) const;

  std::optional<std::filesystem::path> place_;
  std::string guard_;
  Log& log_;
  int fd_ = -1;
};

}  // namespace kivra::guard
