#include "ui/status_item_controller.h"

#include <string>
#include <utility>

#include "support/weakly.h"

namespace kivra {

namespace {

MenuItem item(std::string title, std::function<void()> action, std::string keyEquivalent = {}) {
  return {.title = std::move(title),
          .action = std::move(action),
          .keyEquivalent = std::move(keyEquivalent)};
}

MenuItem information(std::string title) { return {.title = std::move(title), .isEnabled = false}; }

}  // namespace

std::shared_ptr<StatusItemController> StatusItemController::create(
    Environment environment, std::function<void()> openOnboarding,
    std::function<void()> openSettingsWindow) {
  std::shared_ptr<StatusItemController> controller(new StatusItemController(
      std::move(environment), std::move(openOnboarding), std::move(openSettingsWindow)));
  controller->statusItem_->setMenu([weak = std::weak_ptr(controller)] {
    const auto alive = weak.lock();
    return alive ? alive->menuNeedsUpdate() : std::vector<MenuItem>();
  });
  return controller;
}

StatusItemController::StatusItemController(Environment environment,
                                           std::function<void()> openOnboarding,
                                           std::function<void()> openSettingsWindow)
    : env_(std::move(environment)),
      openOnboarding_(std::move(openOnboarding)),
      openSettingsWindow_(std::move(openSettingsWindow)),
      statusItem_(env_.statusBar.statusItem(squareLength)) {
  statusItem_->setButtonImage("keyboard.badge.ellipsis", "Kivra");
}

void StatusItemController::refreshIcon() {
  statusItem_->setAppearsDisabled(!env_.settings.isEnabled() || !env_.permissions.areGranted());
}

std::vector<MenuItem> StatusItemController::menuNeedsUpdate() {
  env_.permissions.refresh();
  const auto isIntercepting = env_.isIntercepting();
  std::vector<MenuItem> items;
  items.push_back(item(env_.settings.isEnabled() ? "Выключить Kivra" : "Включить Kivra",
                       action(&StatusItemController::toggleEnabled)));
  items.push_back(MenuItem::separator());
  items.push_back(information(isIntercepting ? "Перехват клавиатуры: работает ✓"
                                             : "Перехват клавиатуры: НЕ работает"));
  if (!isIntercepting && env_.permissions.areGranted()) {
    items.push_back(item("Запустить перехват", action(&StatusItemController::restartCore)));
  }
  items.push_back(permissionsItem());
  if (const auto impediment = env_.permissions.impediment(); !impediment.empty()) {
    items.push_back(information(impediment));
  }
  items.push_back(MenuItem::separator());
  items.push_back(item("Настройки…", action(&StatusItemController::openSettings), ","));
  items.push_back(MenuItem::separator());
  items.push_back(item("Завершить Kivra", action(&StatusItemController::terminate), "q"));
  return items;
}

MenuItem StatusItemController::permissionsItem() {
  if (env_.permissions.areGranted()) return information("Разрешения выданы ✓");
  std::string missing;
  if (!env_.permissions.accessibilityGranted()) missing = "Accessibility";
  if (!env_.permissions.inputMonitoringGranted()) {
    missing += missing.empty() ? "Input Monitoring" : ", Input Monitoring";
  }
  return item("Нет разрешений: " + missing + "…",
              action(&StatusItemController::showOnboardingWindow));
}

std::function<void()> StatusItemController::action(void (StatusItemController::*method)()) {
  return weakly(weak_from_this(), [method](StatusItemController& self) { (self.*method)(); });
}

void StatusItemController::toggleEnabled() {
  env_.settings.isEnabled.set(!env_.settings.isEnabled());
  refreshIcon();
}

void StatusItemController::restartCore() {
  env_.restartCore();
  refreshIcon();
}

}  // namespace kivra
