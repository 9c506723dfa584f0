#include "platform/qt/symbol_widget.h"

#include <QAccessibleWidget>
#include <QFontMetricsF>
#include <QPainter>

#include "platform/qt/symbol.h"
#include "platform/qt/view_style.h"

namespace kivra::qt {

namespace {

/// A symbol that says something is a picture for screen readers, and any other is nothing.
QAccessibleInterface* accessibleSymbol(const QString& /*className*/, QObject* object) {
  auto* const symbol = dynamic_cast<SymbolWidget*>(object);
  if (symbol == nullptr || symbol->accessibleName().isEmpty()) return nullptr;
  return new QAccessibleWidget(symbol, QAccessible::Graphic);
}

}  // namespace

SymbolWidget::SymbolWidget() {
  [[maybe_unused]] static const auto installed = [] {
    QAccessible::installFactory(accessibleSymbol);
    return true;
  }();
}

void SymbolWidget::setView(const View& view) {
  view_ = view;
  setAccessibleName(QString::fromStdString(view.accessibilityName));
  setFixedSize(sizeHint());
  update();
}

QSize SymbolWidget::sizeHint() const {
  const auto height = QFontMetricsF(styledFont(view_, font())).height();
  return QSizeF(height, height).toSize();
}

void SymbolWidget::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  drawSymbol(painter, rect(), view_.symbol, styledColor(view_, palette()));
}

}  // namespace kivra::qt
