#include "platform/qt/ground_widget.h"

#include <QPainter>

#include "platform/qt/view_style.h"

namespace kivra::qt {

void GroundWidget::paintEvent(QPaintEvent* /*event*/) {
  constexpr double cornerRadius = 10;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(lineColor(palette()), 1));
  painter.setBrush(groundColor(palette()));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius,
                          cornerRadius);
}

}  // namespace kivra::qt
