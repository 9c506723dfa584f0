#include "platform/embedded/embedded_status_bar.h"

#include <functional>
#include <utility>

namespace kivra::embedded {

struct EmbeddedStatusBar::State {
  bool appearsDisabled = false;
  std::function<std::vector<MenuItem>()> menuNeedsUpdate;
};

class EmbeddedStatusBar::Item : public StatusItem {
 public:
  Item(std::shared_ptr<State> state, Effects& effects)
      : state_(std::move(state)), effects_(effects) {}

  void setButtonImage(const std::string& /*symbol*/,
                      const std::string& /*accessibilityDescription*/) override {}

  void setAppearsDisabled(bool disabled) override {
    if (std::exchange(state_->appearsDisabled, disabled) == disabled) return;
    effects_.report([&] { return Json{{"icon", {{"dimmed", disabled}}}}; });
  }

  void setMenu(std::function<std::vector<MenuItem>()> menuNeedsUpdate) override {
    state_->menuNeedsUpdate = std::move(menuNeedsUpdate);
  }

 private:
  std::shared_ptr<State> state_;
  Effects& effects_;
};

std::vector<MenuItem> EmbeddedStatusBar::openMenu() const {
  const auto item = item_.lock();
  return item && item->menuNeedsUpdate ? item->menuNeedsUpdate() : std::vector<MenuItem>();
}

std::unique_ptr<StatusItem> EmbeddedStatusBar::statusItem(double /*length*/) {
  auto state = std::make_shared<State>();
  item_ = state;
  return std::make_unique<Item>(std::move(state), effects_);
}

Json menuJson(const std::vector<MenuItem>& items) {
  auto menu = Json::array();
  for (const auto& item : items) {
    if (item.isSeparator) {
      menu.push_back("separator");
      continue;
    }
    menu.push_back(
        {{"title", item.title}, {"enabled", item.isEnabled}, {"key", item.keyEquivalent}});
  }
  return menu;
}

}  // namespace kivra::embedded
