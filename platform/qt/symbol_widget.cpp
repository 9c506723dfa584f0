#include "platform/qt/symbol_widget.h"

#include <QFontMetricsF>
#include <QPainter>

#include "platform/qt/symbol.h"
#include "platform/qt/view_style.h"

namespace kivra::qt {

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
