#include "ui/onboarding_view.h"

#include <functional>
#include <string>
#include <utility>

#include "support/view_builders.h"
#include "support/weakly.h"

namespace kivra {

namespace {

using enum ViewStyle;

struct PermissionRow {
  const char* title;
  const char* description;
  bool isGranted;
  std::string remedy;
  std::function<void()> request;
  std::function<void()> openSettings;
};

/// A button of a row: there is one with the same text in the other, so it is named after its row.
View rowButton(const std::string& text, const PermissionRow& row,
               const std::function<void()>& action) {
  auto button = views::button(text, action);
  button.accessibilityName = text + " (" + row.title + ")";
  return button;
}

View header() {
  auto titles = views::vStack(
      2,
      {views::text("Kivra нужны два разрешения", {title2, bold}),
       views::text("Чтобы видеть набор текста и заменять его во всех приложениях.", {secondary})});
  titles.alignment = ViewAlignment::leading;
  return views::hStack(12, {views::symbol("keyboard.badge.ellipsis", {large, accent}), titles});
}

View permissionRow(const PermissionRow& row, const Terms& terms) {
  auto state = row.isGranted ? views::symbol("checkmark.circle.fill", {title3, green})
                             : views::symbol("circle.dashed", {title3, secondary});
  state.accessibilityName = row.isGranted ? "Выдано" : "Не выдано";
  auto column =
      views::vStack(6, {views::text(row.title, {headline}), views::note(row.description)});
  column.alignment = ViewAlignment::leading;
  if (!row.isGranted) {
    if (!row.remedy.empty()) column.children.push_back(views::note(row.remedy));
    column.children.push_back(
        views::hStack(8, {rowButton("Запросить", row, row.request),
                          rowButton(terms.term(Term::systemSettings), row, row.openSettings)}));
  }
  auto view = views::hStack(10, {std::move(state), std::move(column)});
  view.alignment = ViewAlignment::top;
  view.padding = 12;
  view.style = {card};
  return view;
}

}  // namespace

OnboardingView::OnboardingView(std::shared_ptr<Permissions> permissions, const Terms& terms)
    : permissions_(std::move(permissions)), terms_(terms) {
  follow(*permissions_);
}

View OnboardingView::body() {
  const auto openPane = [this](const char* anchor) {
    return weakly(permissions_,
                  [anchor](Permissions& permissions) { permissions.openPrivacyPane(anchor); });
  };
  auto view = views::vStack(
      16,
      {header(),
       permissionRow(
           {.title = "Accessibility",
            .description = "Чтение и замена текста в активном поле ввода.",
            .isGranted = permissions_->accessibilityGranted(),
            .remedy = permissions_->accessibilityRemedy(),
            .request = weakly(permissions_, [](Permissions& p) { p.requestAccessibility(); }),
            .openSettings = openPane(privacy_panes::accessibility)},
           terms_),
       permissionRow(
           {.title = "Input Monitoring",
            .description = "Перехват клавиатуры для авто-раскладки и хоткеев.",
            .isGranted = permissions_->inputMonitoringGranted(),
            .remedy = permissions_->inputMonitoringRemedy(),
            .request = weakly(permissions_, [](Permissions& p) { p.requestInputMonitoring(); }),
            .openSettings = openPane(privacy_panes::inputMonitoring)},
           terms_),
       views::note("После выдачи разрешений всё включится автоматически — окно можно закрыть.")});
  if (permissions_->hasDiagnosis()) view.children.push_back(diagnosis());
  view.alignment = ViewAlignment::leading;
  view.padding = 24;
  view.width = 480;
  return view;
}

View OnboardingView::diagnosis() {
  auto column = views::vStack(
      4, {views::button("Подробнее…",
                        weakly(weak_from_this(), [](auto& view) { view.showDiagnosis(); }))});
  column.alignment = ViewAlignment::leading;
  for (const auto& line : diagnosis_) column.children.push_back(views::note(line));
  return column;
}

void OnboardingView::showDiagnosis() {
  willChange();
  diagnosis_ = permissions_->diagnosis();
}

}  // namespace kivra
