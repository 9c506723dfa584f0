#include "ui/general_tab.h"

#include <utility>

#include "ui/bindings.h"

namespace kivra {

namespace {

using enum ViewStyle;

View permissionRow(const char* title, bool isGranted) {
  return views::labeledRow(title, isGranted
                                      ? views::label("Выдано", "checkmark.circle.fill", {green})
                                      : views::label("Не выдано", "xmark.circle", {orange}));
}

}  // namespace

GeneralTab::GeneralTab(std::shared_ptr<SettingsStore> settings,
                       std::shared_ptr<Permissions> permissions, const Terms& terms)
    : settings_(std::move(settings)), permissions_(std::move(permissions)), terms_(terms) {
  follow(*settings_);
  follow(*permissions_);
}

View GeneralTab::body() {
  const auto toggle = [this](const std::string& title, Setting<bool> SettingsStore::*property) {
    return views::toggle(title, bindingTo(settings_, property));
  };
  return views::form(
      {views::section("", {toggle("Включить Kivra", &SettingsStore::isEnabled)}),
       views::section(
           "Автопереключение раскладки",
           {toggle("Исправлять слова не в той раскладке", &SettingsStore::autoSwitchEnabled),
            toggle("Исправлять двойную заглавную (ПРивет → Привет)",
                   &SettingsStore::autoFixDoubleCapitals),
            toggle("Исправлять опечатки на лету (" + terms_.term(Term::spellingDictionary) +
                       ", офлайн)",
                   &SettingsStore::autoCorrectTypos)}),
       permissionsSection()});
}

View GeneralTab::permissionsSection() const {
  auto section = views::section(
      "Разрешения", {permissionRow("Accessibility", permissions_->accessibilityGranted()),
                     permissionRow("Input Monitoring", permissions_->inputMonitoringGranted())});
  if (!permissions_->areGranted()) {
    section.children.push_back(views::button(
        terms_.term(Term::openSystemSettings), weakly(permissions_, [](Permissions& permissions) {
          permissions.openPrivacyPane(privacy_panes::accessibility);
        })));
  }
  return section;
}

}  // namespace kivra
