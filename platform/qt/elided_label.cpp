#include "platform/qt/elided_label.h"

#include <QApplication>
#include <QPainter>

#include "platform/qt/view_style.h"

namespace kivra::qt {

namespace {

/// Longer lines fit no window.
constexpr int longestShown = 500;

}  // namespace

void ElidedLabel::setView(const View& view) {
  view_ = view;
  const auto whole = QString::fromStdString(view.text);
  setFont(styledFont(view, QApplication::font()));
  setTextFormat(Qt::PlainText);
  setText(whole.left(longestShown).simplified());
  setToolTip(whole.toHtmlEscaped());
  setAccessibleName(whole);
  updateGeometry();
}

QSize ElidedLabel::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text()) + 2, fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
  return {std::min(sizeHint().width(), fontMetrics().averageCharWidth() * 6),
          fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(styledColor(view_, palette()));
  painter.drawText(rect(), Qt::AlignVCenter | Qt::AlignLeft,
                   fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

}  // namespace kivra::qt
