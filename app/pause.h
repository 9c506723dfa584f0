#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/run_loop.h"
#include "settings/settings_store.h"
#include "settings/user_defaults.h"

namespace kivra {

/// The program switched off for a while. It comes on by itself: when the time is up, or at the next
/// start when the program ends before. Whoever switches it on meanwhile ends the pause.
class Pause : public std::enable_shared_from_this<Pause> {
 public:
  /// `setEnabled` switches the program on and off, so that it shows.
  Pause(UserDefaults& defaults, SettingsStore& settings, RunLoop& runLoop)
      : defaults_(defaults), settings_(settings), runLoop_(runLoop) {}

  /// Ends a pause that the last run has left.
  void endLeftOver();

  /// Up to a day; a further pause takes the place of one under way. `setEnabled` switches the
  /// program so that it shows.
  void begin(std::chrono::seconds duration, std::function<void(bool)> setEnabled);

 private:
  void end();

  UserDefaults& defaults_;
  SettingsStore& settings_;
  RunLoop& runLoop_;
  std::unique_ptr<Timer> timer_;
  Observable::Subscription settingsChange_;
};

}  // namespace kivra
