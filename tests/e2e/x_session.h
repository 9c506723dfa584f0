#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "child_process.h"

namespace kivra::e2e {

/// Calls `condition` until it holds, at most this long; answers whether it did.
bool waitFor(const std::function<bool()>& condition,
             std::chrono::milliseconds timeout = std::chrono::seconds(10));

/// Something accepts connections at the Unix socket of this path.
bool isServed(const std::filesystem::path& socket);

/// A login session of its own: X server, window manager, session bus with accessibility switched
/// on, empty home. Throws std::runtime_error where one of these cannot be had.
class XSession {
 public:
  struct Options {
    std::string layouts = "us,ru";
    std::string variants{};
    std::string xkbOptions{};
    bool windowManager = true;
    bool accessibility = true;
    std::vector<std::string> serverArguments{};
  };

  XSession() : XSession(Options{}) {}
  explicit XSession(const Options& options);
  ~XSession();
  XSession(const XSession&) = delete;
  XSession& operator=(const XSession&) = delete;

  const std::string& display() const { return display_; }
  const Environment& environment() const { return environment_; }

  /// Starts a program in the session; its output goes to `log`.
  std::unique_ptr<ChildProcess> start(const std::vector<std::string>& command,
                                      const std::string& log = "");
  std::string run(const std::vector<std::string>& command) {
    return outputOf(command, environment_);
  }

  /// Starts Kivra and waits until it holds the keys that it may consume.
  ChildProcess& startKivra(const std::vector<std::string>& command = {KIVRA_PROGRAM});
  ChildProcess& kivra() { return *kivra_; }
  void stopKivra() { kivra_.reset(); }

  /// Whether some program holds Space.
  bool isSpaceGrabbed() const;

  /// The process number of Kivra's keyboard guard, 0 while there is none.
  pid_t guardPid();

  /// What Kivra has written to standard error.
  std::string kivraLog() const { return readFile("kivra.log"); }
  std::string readFile(const std::string& name) const;
  std::filesystem::path path(const std::string& name) const { return home_ / name; }

  void switchAccessibilityOn();
  void killServer() { server_->signal(9); }
  void killBus() { bus_->signal(9); }

 private:
  void startServer(const std::vector<std::string>& arguments);
  void startBus();

  std::filesystem::path home_;
  std::string display_;
  Environment environment_;
  std::unique_ptr<ChildProcess> server_;
  std::unique_ptr<ChildProcess> bus_;
  std::unique_ptr<ChildProcess> windowManager_;
  std::unique_ptr<ChildProcess> kivra_;
};

}  // namespace kivra::e2e
