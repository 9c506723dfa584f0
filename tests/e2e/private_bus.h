#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "child_process.h"

namespace kivra::e2e {

/// A session bus on which nothing runs and nothing is started by itself, with an empty home. Throws
/// std::runtime_error without dbus-daemon.
class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  const Environment& environment() const { return environment_; }
  const std::filesystem::path& home() const { return home_; }

  /// Ends the bus; the home stays.
  void kill() { daemon_.reset(); }

  /// Makes this process use the bus and the home as well.
  void enter() const;

  /// Whether somebody owns the name on the bus.
  bool hasOwner(const std::string& name) const;

 private:
  std::filesystem::path home_;
  Environment environment_;
  std::unique_ptr<ChildProcess> daemon_;
};

}  // namespace kivra::e2e
