#pragma once

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

namespace kivra::qt {

/// An icon that is painted anew at every size.
class PaintedIconEngine : public QIconEngine {
 public:
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect({}, size), mode, state);
    return pixmap;
  }

  QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
    return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}, {64, 64}};
  }
};

}  // namespace kivra::qt
