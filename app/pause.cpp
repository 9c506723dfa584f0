#include "app/pause.h"

#include <utility>

#include "support/weakly.h"

namespace kivra {

namespace {
constexpr auto pauseKey = "kivra.isPaused";
}

void Pause::endLeftOver() {
  if (!defaults_.boolForKey(pauseKey).value_or(false)) return;
  settings_.isEnabled.set(true);
  end();
}

void Pause::begin(std::chrono::seconds duration, std::function<void(bool)> setEnabled) {
  setEnabled(false);
  defaults_.set(true, pauseKey);
  timer_ = runLoop_.scheduleRepeatingTimer(duration, [switchOn = std::move(setEnabled)] {
    switchOn(true);  // which ends the pause
  });
  // Told before the change: what it was is known a turn later.
  settingsChange_ = settings_.observe([this] {
    runLoop_.asyncAfter(std::chrono::microseconds(0), weakly(weak_from_this(), [](Pause& self) {
                          if (self.timer_ && self.settings_.isEnabled()) self.end();
                        }));
  });
}

void Pause::end() {
  timer_.reset();
  settingsChange_ = {};
  defaults_.set(false, pauseKey);
}

}  // namespace kivra
