#pragma once

#include <memory>
#include <optional>

#include "app/event_tap.h"
#include "app/services.h"
#include "hotkeys/hotkey_router.h"

namespace kivra {

/// Joins the pieces into the road that every key takes: tap, router, layout switcher. Owns the tap
/// and carries out what the router asks for.
class CoreController : public HotkeyRouterDelegate,
                       public std::enable_shared_from_this<CoreController> {
 public:
  static std::shared_ptr<CoreController> create(Services& services);

  /// Makes and starts the tap, unless there is one, and keeps it whether or not it started.
  void start();

  /// Drops the tap and starts a new one.
  void restart();

  bool hasEventTap() const { return eventTap_ != nullptr; }
  bool isIntercepting() const { return eventTap_ && eventTap_->isRunning(); }

  void routerDidRequestAction(const HotkeyAction& action) override;
  void routerDidRequestManualSwitch() override;
  void routerDidRequestUndo() override;
  bool routerDidTypeKey(std::uint16_t keyCode, std::uint64_t flags) override;
  bool routerDidReachWordBoundary(std::optional<std::uint16_t> keyCode) override;

 private:
  explicit CoreController(Services& services);

  bool handle(const Event& event, EventType type);
  void announceConsumableKeys();

  Services& services_;
  SettingsStore& settings_;
  HotkeyRouter router_;
  std::unique_ptr<EventTap> eventTap_;
  Observable::Subscription settingsChange_;
};

}  // namespace kivra
