#pragma once

#include <filesystem>
#include <memory>

#include "child_process.h"
#include "private_bus.h"

namespace kivra::e2e {

/// A KWin of a test's own, without a screen, on a private bus; this process is its client as well.
/// It starts the guard as its input method, and starts it again when it ends.
class KwinServer {
 public:
  struct Options {
    /// With the test's own guard; else with what the configuration names.
    bool hasTestsGuard = true;
    std::string configuration{};  ///< kwinrc
    /// The environment of KWin and of what runs inside has this as well.
    Environment environment{};
  };

  KwinServer() : KwinServer(Options{}) {}
  /// Throws std::runtime_error when KWin does not start.
  explicit KwinServer(const Options& options);
  ~KwinServer();
  KwinServer(const KwinServer&) = delete;
  KwinServer& operator=(const KwinServer&) = delete;

  /// The program's end of the socket of the next guard that KWin has started. Throws
  /// std::runtime_error when none comes.
  int acceptGuard() const;

  /// Of what runs inside.
  const Environment& environment() const { return environment_; }

  /// Selects a layout as the desktop's switcher does.
  void selectLayout(int layout) const;

  std::filesystem::path path(const std::string& name) const { return bus_.home() / name; }
  std::string readFile(const std::string& name) const;

 private:
  PrivateBus bus_;
  Environment environment_;
  int listener_ = -1;
  std::unique_ptr<ChildProcess> kwin_;
};

}  // namespace kivra::e2e
