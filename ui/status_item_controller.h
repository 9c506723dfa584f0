#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/application.h"
#include "platform/status_bar.h"
#include "settings/settings_store.h"
#include "ui/permissions.h"

namespace kivra {

/// The program's icon in the status bar and its menu, which is built anew at every opening.
class StatusItemController : public std::enable_shared_from_this<StatusItemController> {
 public:
  struct Environment {
    StatusBar& statusBar;
    Application& application;
    SettingsStore& settings;
    Permissions& permissions;
    std::function<bool()> isIntercepting;
    std::function<void()> restartCore;
  };

  static std::shared_ptr<StatusItemController> create(Environment environment,
                                                      std::function<void()> openOnboarding,
                                                      std::function<void()> openSettingsWindow);

  /// Dims the icon unless the program is switched on and both permissions, as last checked, are
  /// granted.
  void refreshIcon();

 private:
  StatusItemController(Environment environment, std::function<void()> openOnboarding,
                       std::function<void()> openSettingsWindow);

  std::vector<MenuItem> menuNeedsUpdate();
  MenuItem permissionsItem();
  std::function<void()> action(void (StatusItemController::*method)());
  void toggleEnabled();
  void restartCore();
  void showOnboardingWindow() { openOnboarding_(); }
  void openSettings() { openSettingsWindow_(); }
  void terminate() { env_.application.terminate(); }

  Environment env_;
  std::function<void()> openOnboarding_;
  std::function<void()> openSettingsWindow_;
  std::unique_ptr<StatusItem> statusItem_;
};

}  // namespace kivra
