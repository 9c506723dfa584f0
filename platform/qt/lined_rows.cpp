#include "platform/qt/lined_rows.h"

#include <QPainter>

#include "platform/qt/view_style.h"

namespace kivra::qt {

namespace {

constexpr int margin = 12;
constexpr int spacing = 15;

}  // namespace

LinedRows::LinedRows() : rows_(new QVBoxLayout(this)) {
  rows_->setContentsMargins(margin, margin, margin, margin);
  rows_->setSpacing(spacing);
}

void LinedRows::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(lineColor(palette()));
  for (int i = 1; i < rows_->count(); ++i) {
    const auto y = rows_->itemAt(i)->geometry().top() - spacing / 2 - 1;
    painter.drawLine(margin, y, width() - margin, y);
  }
}

}  // namespace kivra::qt
