#pragma once

#include <memory>

#include "app/services.h"
#include "ui/hosting_window.h"
#include "ui/status_item_controller.h"

namespace kivra {

/// Starts the program: one instance only, the status item, then the interception core, at once or
/// as soon as both permissions are granted. Owns the two windows of the program.
class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
 public:
  explicit AppDelegate(Services& services) : services_(services) {}

  void applicationDidFinishLaunching();

  /// Switches the program on or off, as the menu does.
  void setEnabled(bool isEnabled);

  void showSettingsWindow();

 private:
  bool isAnotherInstanceRunning();
  void createStatusItem();
  void permissionsWereGranted();
  void startCore();
  void showPermissionsWindow();
  void show(HostingWindow& window);

  Services& services_;
  std::shared_ptr<StatusItemController> statusItemController_;
  std::shared_ptr<HostingWindow> onboardingWindow_;
  std::shared_ptr<HostingWindow> settingsWindow_;
  bool isMakingSettingsWindow_ = false;
};

}  // namespace kivra
