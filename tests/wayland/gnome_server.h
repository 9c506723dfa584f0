#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "child_process.h"
#include "private_bus.h"
#include "session_bus.h"

namespace kivra::e2e {

/// A GNOME Shell of a test's own, without a screen, with IBus and Kivra's extension, on buses of
/// its own; this process is its client as well.
class GnomeServer {
 public:
  /// Throws std::runtime_error when the shell does not start.
  GnomeServer();
  ~GnomeServer();
  GnomeServer(const GnomeServer&) = delete;
  GnomeServer& operator=(const GnomeServer&) = delete;

  /// Of what runs inside.
  const Environment& environment() const { return environment_; }
  std::filesystem::path path(const std::string& name) const { return system_.home() / name; }
  std::string readFile(const std::string& name) const;

  /// The name of IBus's engine that stands behind the shell's layouts.
  std::string engine() const;

  /// Where the shell itself reads what is typed.
  void showOverview(bool isShown) const;

 private:
  std::filesystem::path sessionFolder() const;
  void installExtension() const;
  void writeSettings() const;
  void waitForOverview(bool isShown) const;

  PrivateBus system_;
  Environment environment_;
  SessionBus session_;
  std::unique_ptr<ChildProcess> shell_;
};

}  // namespace kivra::e2e
