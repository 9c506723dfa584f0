#include "app/app_delegate.h"

#include <string>

#include "app/core_controller.h"
#include "platform/application.h"
#include "platform/log.h"
#include "support/weakly.h"
#include "ui/onboarding_view.h"
#include "ui/settings_view.h"

namespace kivra {

namespace {

SettingsView::Environment settingsEnvironment(Services& services) {
  return {.settings = services.settings.pointer(),
          .permissions = services.permissions.pointer(),
          .replacements = services.replacements.pointer(),
          .keychain = services.text.keychain(),
          .engines = services.text.engines(),
          .localKeyMonitors = services.platform.localKeyMonitors,
          .englishCharacter = [&services](std::uint16_t keyCode) -> std::optional<std::string> {
            const auto* english = services.keycodeMap().english();
            return english == nullptr ? std::nullopt : english->character(keyCode, false);
          },
          .workspace = services.platform.workspace,
          .notifications = services.platform.notifications,
          .terms = services.platform.terms};
}

}  // namespace

void AppDelegate::applicationDidFinishLaunching() {
  if (isAnotherInstanceRunning()) {
    services_.platform.application.terminate();
    return;
  }
  services_.pause().endLeftOver();
  createStatusItem();
  auto& permissions = services_.permissions();
  permissions.refresh();
  if (permissions.areGranted()) {
    startCore();
    return;
  }
  showPermissionsWindow();
  permissions.startPolling(
      weakly(weak_from_this(), [](AppDelegate& self) { self.permissionsWereGranted(); }));
}

void AppDelegate::setEnabled(bool isEnabled) {
  services_.settings().isEnabled.set(isEnabled);
  if (statusItemController_) statusItemController_->refreshIcon();
}

bool AppDelegate::isAnotherInstanceRunning() {
  auto& application = services_.platform.application;
  std::string others;
  for (const auto pid :
       application.runningApplications(application.bundleIdentifier().value_or(""))) {
    if (pid == application.processIdentifier()) continue;
    if (!others.empty()) others += ", ";
    others += std::to_string(pid);
  }
  if (others.empty()) return false;
  services_.platform.log.log("Kivra: уже запущен (pid [" + others + "]), выходим");
  return true;
}

void AppDelegate::createStatusItem() {
  const auto openSettings =
      weakly(weak_from_this(), [](AppDelegate& self) { self.showSettingsWindow(); });
  statusItemController_ = StatusItemController::create(
      {.statusBar = services_.platform.statusBar,
       .application = services_.platform.application,
       .settings = services_.settings(),
       .permissions = services_.permissions(),
       .isIntercepting = [this] { return services_.coreController().isIntercepting(); },
       .restartCore = [this] { services_.coreController().restart(); }},
      weakly(weak_from_this(), [](AppDelegate& self) { self.showPermissionsWindow(); }),
      openSettings);
  services_.showSettingsWindow = openSettings;
}

void AppDelegate::permissionsWereGranted() {
  if (onboardingWindow_) onboardingWindow_->close();
  startCore();
}

void AppDelegate::startCore() {
  services_.coreController().start();
  if (statusItemController_) statusItemController_->refreshIcon();
}

void AppDelegate::showPermissionsWindow() {
  if (!onboardingWindow_) {
    onboardingWindow_ = HostingWindow::create(
        services_.platform.windows, services_.platform.runLoop, "permissions", "Kivra — разрешения",
        std::make_shared<OnboardingView>(services_.permissions.pointer(),
                                         services_.platform.terms));
  }
  show(*onboardingWindow_);
}

void AppDelegate::showSettingsWindow() {
  // Reading the keychain keeps the run loop turning, which may ask for the window again.
  if (isMakingSettingsWindow_) return;
  if (!settingsWindow_) {
    isMakingSettingsWindow_ = true;
    settingsWindow_ = HostingWindow::create(
        services_.platform.windows, services_.platform.runLoop, "settings", "Kivra — настройки",
        std::make_shared<SettingsView>(settingsEnvironment(services_)));
    isMakingSettingsWindow_ = false;
  }
  show(*settingsWindow_);
}

void AppDelegate::show(HostingWindow& window) {
  window.makeKeyAndOrderFront();
  services_.platform.application.activateIgnoringOtherApps();
}

}  // namespace kivra
