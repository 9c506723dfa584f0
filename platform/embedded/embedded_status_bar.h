#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/embedded/effects.h"
#include "platform/status_bar.h"

namespace kivra::embedded {

/// A status bar with room for one item; the user opens its menu and chooses from it.
class EmbeddedStatusBar : public StatusBar {
 public:
  explicit EmbeddedStatusBar(Effects& effects) : effects_(effects) {}

  /// The menu as it opens now; empty without an item.
  std::vector<MenuItem> openMenu() const;

  std::unique_ptr<StatusItem> statusItem(double length) override;

 private:
  struct State;
  class Item;

  Effects& effects_;
  std::weak_ptr<State> item_;
};

/// The form in which a menu is printed.
Json menuJson(const std::vector<MenuItem>& items);

}  // namespace kivra::embedded
