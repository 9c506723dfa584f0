#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "child_process.h"

namespace kivra::e2e {

/// A headless sway of a test's own, without keyboards and pointers of the machine's, with a runtime
/// folder of its own. A window that opens gets the focus. sway refuses to run as root: then it runs
/// as nobody, and what is started in it as root.
class SwayServer {
 public:
  struct Options {
    std::string layouts = "us,ru";
    std::string xkbOptions{};
    std::string moreConfig{};  ///< lines of sway's configuration
    /// What is started inside has this as well: a private bus, for one.
    Environment environment{};
  };

  SwayServer() : SwayServer(Options{}) {}
  /// Throws std::runtime_error when sway does not start.
  explicit SwayServer(const Options& options);
  ~SwayServer();
  SwayServer(const SwayServer&) = delete;
  SwayServer& operator=(const SwayServer&) = delete;

  /// Of what runs inside.
  const Environment& environment() const { return environment_; }
  Environment& environment() { return environment_; }
  /// Makes this process, and what it starts, a client as well.
  void enter() const;

  /// Starts a program inside; its output goes to the file `log` of the folder.
  std::unique_ptr<ChildProcess> start(const std::vector<std::string>& command,
                                      const std::string& log = "");

  /// The command as sway's own user runs it: XWayland lets nobody else in.
  static std::vector<std::string> asItsUser(std::vector<std::string> command);

  /// Has sway run a command, and answers what it says: in JSON, if it is asked for something.
  std::string message(const std::vector<std::string>& arguments) const;

  std::filesystem::path path(const std::string& name) const { return home_ / name; }
  std::string readFile(const std::string& name) const;

  pid_t pid() const { return sway_->pid(); }
  void kill() { sway_->signal(9); }

 private:
  void writeConfiguration(const Options& options) const;
  std::string runtimeEntry(const std::string& prefix) const;

  std::filesystem::path home_;
  std::filesystem::path runtime_;
  Environment environment_;
  std::unique_ptr<ChildProcess> sway_;
};

}  // namespace kivra::e2e
