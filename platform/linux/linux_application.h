#pragma once

#include <functional>

#include "platform/application.h"

namespace kivra {

/// This process and its like among the user's processes. Instances on different X displays have
/// nothing to do with each other.
class LinuxApplication : public Application {
 public:
  explicit LinuxApplication(std::function<void()> quit) : quit_(std::move(quit)) {}

  std::optional<std::string> bundleIdentifier() override { return identifier; }
  std::int32_t processIdentifier() override;

  /// Knows only of this program; of others it answers none.
  std::vector<std::int32_t> runningApplications(std::string_view bundleIdentifier) override;
  void activateIgnoringOtherApps() override {}
  void terminate() override { quit_(); }

 private:
  static constexpr const char* identifier = "app.kivra.Kivra";

  std::function<void()> quit_;
};

}  // namespace kivra
