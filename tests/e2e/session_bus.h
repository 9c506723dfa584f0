#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "child_process.h"

namespace kivra::e2e {

/// The session bus of a login session, with the distribution's services. Throws std::runtime_error
/// where it cannot be had.
class SessionBus {
 public:
  /// Listens in the folder. `environment` is that of the session, to which the bus is added.
  SessionBus(const std::filesystem::path& folder, Environment& environment);

  void switchAccessibilityOn() const;

  /// As the user's desktop would lose it.
  void kill() { daemon_->signal(9); }

 private:
  const Environment& environment_;
  std::unique_ptr<ChildProcess> daemon_;
};

}  // namespace kivra::e2e
