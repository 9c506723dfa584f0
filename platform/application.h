#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kivra {

/// This program as the desktop knows it.
class Application {
 public:
  virtual ~Application() = default;

  virtual std::optional<std::string> bundleIdentifier() = 0;
  virtual std::int32_t processIdentifier() = 0;

  /// Process numbers of all running instances with this identifier, this one included.
  virtual std::vector<std::int32_t> runningApplications(std::string_view bundleIdentifier) = 0;

  /// Brings the program's windows to the front, whatever application is there.
  virtual void activateIgnoringOtherApps() = 0;

  /// Asks for an orderly exit; returns.
  virtual void terminate() = 0;
};

}  // namespace kivra
