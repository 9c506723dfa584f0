#include "app/app_delegate.h"

#include <string>

#include "platform/application.h"
#include "platform/log.h"

namespace kivra {

void AppDelegate::applicationDidFinishLaunching() {
  if (isAnotherInstanceRunning()) {
    services_.platform.application.terminate();
    return;
  }
  auto& permissions = services_.permissions();
  permissions.refresh();
  if (permissions.areGranted()) {
    startCore();
    return;
  }
  permissions.startPolling([weak = weak_from_this()] {
    if (const auto delegate = weak.lock()) delegate->startCore();
  });
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

void AppDelegate::startCore() {
  if (!controller_) controller_ = CoreController::create(services_);
  controller_->start();
}

}  // namespace kivra
