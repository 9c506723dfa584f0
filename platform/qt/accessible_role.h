#pragma once

#include <QAccessible>
#include <QWidget>

namespace kivra::qt {

/// Has screen readers told what the widget stands for, where its class does not say it.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

}  // namespace kivra::qt
