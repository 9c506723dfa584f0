#include "platform/qt/switch_widget.h"

#include <QFontMetrics>
#include <QPainter>

#include "platform/qt/view_style.h"

namespace kivra::qt {

SwitchWidget::SwitchWidget(QWidget* parent) : QAbstractButton(parent) {
  setCheckable(true);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize SwitchWidget::sizeHint() const {
  const auto height = fontMetrics().height() + 6;
  return {height * 7 / 4, height};
}

void SwitchWidget::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(0.5);
  const auto track = QRectF(rect()).adjusted(2, 2, -2, -2);
  const auto radius = track.height() / 2;
  const auto on = isChecked();
  painter.setPen(Qt::NoPen);
  const auto off = secondaryColor(palette());
  painter.setBrush(on ? palette().color(QPalette::Highlight)
                      : QColor(off.red(), off.green(), off.blue(), 110));
  painter.drawRoundedRect(track, radius, radius);
  const auto x = on ? track.right() - radius : track.left() + radius;
  painter.setBrush(Qt::white);
  painter.drawEllipse(QPointF(x, track.center().y()), radius - 2, radius - 2);
  if (hasFocus()) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::WindowText), 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius + 2, radius + 2);
  }
}

}  // namespace kivra::qt
