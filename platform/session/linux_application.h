#pragma once

#include <functional>
#include <utility>

#include "platform/application.h"
#include "platform/session/instance_claim.h"

namespace kivra {

/// This process, and the instance of the program that was in the login session before it.
class LinuxApplication : public Application {
 public:
  explicit LinuxApplication(std::function<void()> quit) : quit_(std::move(quit)) {}

  std::optional<std::string> bundleIdentifier() override { return identifier; }
  std::int32_t processIdentifier() override;

  /// Knows only of this program; of others it answers none. The first call makes this process the
  /// session's instance unless another is.
  std::vector<std::int32_t> runningApplications(std::string_view bundleIdentifier) override;

  /// Nothing to do: each window and alert comes to the front by itself when it is asked for.
  void activateIgnoringOtherApps() override {}

  /// Has the instance that was there before come forward first.
  void terminate() override;

 private:
  static constexpr const char* identifier = "app.kivra.Kivra";

  InstanceClaim claim_{identifier};
  std::function<void()> quit_;
  bool isSecond_ = false;
};

}  // namespace kivra
