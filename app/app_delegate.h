#pragma once

#include <memory>

#include "app/core_controller.h"
#include "app/services.h"

namespace kivra {

/// Starts the program: one instance only, then the interception core, at once or as soon as both
/// permissions are granted.
class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
 public:
  explicit AppDelegate(Services& services) : services_(services) {}

  void applicationDidFinishLaunching();

  /// Null before the core was first started.
  const CoreController* coreController() const { return controller_.get(); }

 private:
  bool isAnotherInstanceRunning();
  void startCore();

  Services& services_;
  std::shared_ptr<CoreController> controller_;
};

}  // namespace kivra
