#pragma once

#include <deque>
#include <string>
#include <utility>

#include "platform/alerts.h"
#include "platform/embedded/effects.h"

namespace kivra::embedded {

/// Alerts that are answered at once: by the button that the user was going to press, else by the
/// last one.
class EmbeddedAlerts : public Alerts {
 public:
  explicit EmbeddedAlerts(Effects& effects) : effects_(effects) {}

  /// The next alert that has no answer yet is answered with the button of this title.
  void queueButton(std::string title) { answers_.push_back(std::move(title)); }

  int runModal(const Alert& alert) override;
  void beep() override;

 private:
  Effects& effects_;
  std::deque<std::string> answers_;
};

}  // namespace kivra::embedded
