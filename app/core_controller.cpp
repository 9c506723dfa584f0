#include "app/core_controller.h"

#include "platform/alerts.h"
#include "platform/run_loop.h"

namespace kivra {

CoreController::CoreController(Services& services)
    : services_(services),
      settings_(services.settings()),
      router_(settings_, services.platform.clock) {}

std::shared_ptr<CoreController> CoreController::create(Services& services) {
  std::shared_ptr<CoreController> controller(new CoreController(services));
  controller->router_.setDelegate(controller);
  // Observers are told before the change, so the new value is asked for a turn later.
  controller->settingsChange_ = controller->settings_.observe([weak = std::weak_ptr(controller)] {
    const auto changing = weak.lock();
    if (!changing) return;
    changing->services_.platform.runLoop.asyncAfter(std::chrono::microseconds(0), [weak] {
      if (const auto changed = weak.lock()) changed->announceConsumableKeys();
    });
  });
  // There is nothing to undo in what has not been typed.
  services.platform.eventPosting.onRefusal([weak = std::weak_ptr(controller)] {
    if (const auto refused = weak.lock()) refused->services_.undoStack.takeLast();
  });
  return controller;
}

void CoreController::start() {
  if (eventTap_) return;
  announceConsumableKeys();
  eventTap_ =
      std::make_unique<EventTap>(services_.platform.eventTaps, services_.platform.log,
                                 [weak = weak_from_this()](const Event& event, EventType type) {
                                   const auto controller = weak.lock();
                                   return controller && controller->handle(event, type);
                                 });
  eventTap_->start();
}

void CoreController::restart() {
  eventTap_.reset();
  start();
}

void CoreController::announceConsumableKeys() {
  auto keys = settings_.isEnabled() ? router_.consumableKeys() : std::vector<KeyChord>{};
  if (settings_.isEnabled() && settings_.extendedRules()) {
    for (const auto& mark : services_.keycodeMap().marks()) {
      keys.push_back({mark.keyCode, mark.shift ? event_flags::shift : 0});
    }
  }
  services_.platform.eventTaps.setConsumableKeys(keys);
}

bool CoreController::handle(const Event& event, EventType type) {
  return settings_.isEnabled() && router_.handle(event, type);
}

void CoreController::routerDidRequestManualSwitch() { services_.layoutSwitcher().manualSwitch(); }

void CoreController::routerDidRequestUndo() {
  const auto action = services_.undoStack.takeLast();
  if (!action) return;
  if (action->fits && !action->fits()) {
    services_.platform.alerts.beep();
    return;
  }
  action->undo();
  if (action->learnedToken) services_.exceptions().add(*action->learnedToken);
}

bool CoreController::routerDidTypeKey(std::uint16_t keyCode, std::uint64_t flags) {
  return services_.layoutSwitcher().keyTyped(keyCode, flags);
}

bool CoreController::routerDidReachWordBoundary(std::optional<std::uint16_t> keyCode) {
  return services_.layoutSwitcher().wordBoundary(keyCode);
}

}  // namespace kivra
