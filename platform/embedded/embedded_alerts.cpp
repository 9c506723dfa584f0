#include "platform/embedded/embedded_alerts.h"

#include <algorithm>

namespace kivra::embedded {

int EmbeddedAlerts::runModal(const Alert& alert) {
  effects_.report([&] {
    return Json{{"alert",
                 {{"title", alert.messageText},
                  {"text", alert.informativeText},
                  {"buttons", alert.buttons}}}};
  });
  auto pressed = alert.buttons.empty() ? alert.buttons.end() : alert.buttons.end() - 1;
  if (!answers_.empty()) {
    const auto chosen = std::ranges::find(alert.buttons, answers_.front());
    if (chosen != alert.buttons.end()) pressed = chosen;
    answers_.pop_front();
  }
  return alertFirstButtonReturn + static_cast<int>(pressed - alert.buttons.begin());
}

void EmbeddedAlerts::beep() {
  effects_.report([] { return Json{{"beep", true}}; });
}

}  // namespace kivra::embedded
