#include "platform/qt/accessible_role.h"

#include <QAccessibleWidget>
#include <QVariant>

namespace kivra::qt {

namespace {

constexpr auto roleProperty = "kivraAccessibleRole";

QAccessibleInterface* withItsRole(const QString& /*className*/, QObject* object) {
  auto* const widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr) return nullptr;
  const auto role = widget->property(roleProperty);
  if (!role.isValid()) return nullptr;
  return new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()));
}

}  // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
  // Installing the same function again changes nothing.
  QAccessible::installFactory(withItsRole);
  widget.setProperty(roleProperty, static_cast<int>(role));
}

}  // namespace kivra::qt
