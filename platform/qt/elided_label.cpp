#include "platform/qt/elided_label.h"

#include <QApplication>
#include <QPainter>

#include "platform/qt/shown_text.h"
#include "platform/qt/view_style.h"

namespace kivra::qt {

namespace {

/// So many letters stay where a longer text beside them takes the room.
constexpr int keptLetters = 18;

}  // namespace

void ElidedLabel::setView(const View& view) {
  view_ = view;
  setFont(styledFont(view, QApplication::font()));
  setTextFormat(Qt::PlainText);
  setText(shownLine(view.text));
  setToolTip(toolTipText(view.text));
  setAccessibleName(QString::fromStdString(view.text));
  setAccessibleDescription(shownLine(view.text));  // or else the tip, with its markup
  updateGeometry();
}

QSize ElidedLabel::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text()) + 2, fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
  return {std::min(sizeHint().width(), fontMetrics().averageCharWidth() * keptLetters),
          fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(styledColor(view_, palette()));
  painter.drawText(rect(), Qt::AlignVCenter | Qt::AlignLeft,
                   fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

}  // namespace kivra::qt
