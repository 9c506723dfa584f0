#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kivra::e2e {

using Environment = std::map<std::string, std::string>;

/// A program started by a test; killed with the object.
class ChildProcess {
 public:
  struct Options {
    Environment environment{};  ///< the whole environment
    std::string outputFile{};   ///< takes standard output and standard error; empty: nowhere
    int inheritedFd = -1;       ///< becomes descriptor 3 of the child
  };

  ChildProcess(const std::vector<std::string>& command, const Options& options);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return pid_; }
  void signal(int number) const;

  /// The exit status (128 + the signal's number for a killed process), waited for at most this
  /// long.
  std::optional<int> wait(std::chrono::milliseconds timeout);

 private:
  pid_t pid_ = -1;
  std::optional<int> status_;
};

/// Runs a command to its end and answers its output; a failure to start answers nothing.
std::string outputOf(const std::vector<std::string>& command, const Environment& environment);

}  // namespace kivra::e2e
