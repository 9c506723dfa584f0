#pragma once

#include <filesystem>
#include <string>
#include <utility>

namespace kivra::guard {

/// Finds the program for a guard that the desktop has started, whenever one comes.
class ProgramFinder {
 public:
  /// `place` is where it listens, `program` the only executable that is told of keys. Throws
  /// std::runtime_error, with a line for the user, when the place cannot be watched.
  ProgramFinder(const std::filesystem::path& place, std::string program);
  ~ProgramFinder();
  ProgramFinder(const ProgramFinder&) = delete;
  ProgramFinder& operator=(const ProgramFinder&) = delete;

  /// Readable when a program may have come.
  int fd() const { return watch_; }
  /// A socket to a program that has come since the last call, which the caller closes; -1 when
  /// none has. Another program is left, with a line.
  int find();
  /// The program has gone, and may be there again already.
  void lookAgain() { isDue_ = true; }

 private:
  std::filesystem::path place_;
  std::string program_;
  int watch_ = -1;
  bool isDue_ = true;
};

}  // namespace kivra::guard
