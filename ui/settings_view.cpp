#include "ui/settings_view.h"

#include <vector>

#include "ui/bindings.h"
#include "ui/dictionary_tab.h"
#include "ui/general_tab.h"
#include "ui/hotkeys_tab.h"
#include "ui/translation_tab.h"

namespace kivra {

SettingsView::SettingsView(const Environment& environment)
    : tabs_{{{"Общие", "gearshape",
              std::make_shared<GeneralTab>(environment.settings, environment.permissions,
                                           environment.terms)},
             {"Перевод", "globe",
              std::make_shared<TranslationTab>(environment.settings, environment.keychain,
                                               environment.engines, environment.terms)},
             {"База", "character.book.closed",
              std::make_shared<DictionaryTab>(environment.replacements)},
             {"Хоткеи", "keyboard",
              std::make_shared<HotkeysTab>(HotkeysTab::Environment{
                  environment.settings, environment.localKeyMonitors, environment.englishCharacter,
                  environment.workspace, environment.notifications, environment.terms})}}} {
  for (const auto& tab : tabs_) follow(*tab.view);
}

View SettingsView::body() {
  std::vector<View> tabs;
  for (const auto& tab : tabs_) tabs.push_back(views::tab(tab.label, tab.symbol, tab.view->body()));
  auto view =
      views::tabs(std::move(tabs), bindingTo(weak_from_this(), selection_, &SettingsView::select));
  view.width = 480;
  view.height = 460;
  return view;
}

void SettingsView::select(const std::size_t& index) {
  if (index == selection_ || index >= tabs_.size()) return;
  willChange();
  selected().onDisappear();
  selection_ = index;
  selected().onAppear();
}

}  // namespace kivra
