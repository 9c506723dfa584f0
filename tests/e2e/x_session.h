#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "child_process.h"
#include "session_bus.h"
#include "unix_socket.h"
#include "x_server.h"

namespace kivra::e2e {

/// Calls `condition` until it holds, at most this long; answers whether it did.
bool waitFor(const std::function<bool()>& condition,
             std::chrono::milliseconds timeout = std::chrono::seconds(10));

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
    XServer::Options server{};
  };

  XSession() : XSession(Options{}) {}
  explicit XSession(const Options& options);
  ~XSession();
  XSession(const XSession&) = delete;
  XSession& operator=(const XSession&) = delete;

  XServer& server() { return *server_; }
  const std::string& display() const { return server_->display(); }
  const Environment& environment() const { return environment_; }

  /// Starts a program in the session; its output goes to `log`.
  std::unique_ptr<ChildProcess> start(const std::vector<std::string>& command,
                                      const std::string& log = "");
  std::string run(const std::vector<std::string>& command) {
    return outputOf(command, environment_);
  }

  /// Starts Kivra and waits until its guard is the keyboard.
  ChildProcess& startKivra(const std::vector<std::string>& command = {KIVRA_PROGRAM});
  ChildProcess& kivra() { return *kivra_; }
  void stopKivra() { kivra_.reset(); }

  /// Whether some program holds every keyboard of the session but XTEST's.
  bool isKeyboardHeld() const;

  /// The process numbers of Kivra's keyboard guard and of the one that watches over it, 0 while
  /// there is none.
  pid_t guardPid() { return childOf(watcherPid()); }
  pid_t watcherPid() { return kivra_ ? childOf(kivra_->pid()) : 0; }

  /// What Kivra has written to standard error.
  std::string kivraLog() const { return readFile("kivra.log"); }
  std::string readFile(const std::string& name) const;
  std::filesystem::path path(const std::string& name) const { return home_ / name; }

  void switchAccessibilityOn() { bus_->switchAccessibilityOn(); }
  void killServer() { server_->kill(); }
  void killBus() { bus_->kill(); }

 private:
  pid_t childOf(pid_t process);

  std::filesystem::path home_;
  std::unique_ptr<XServer> server_;
  Environment environment_;
  std::unique_ptr<SessionBus> bus_;
  std::unique_ptr<ChildProcess> windowManager_;
  std::unique_ptr<ChildProcess> kivra_;
};

}  // namespace kivra::e2e
