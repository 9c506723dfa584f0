#include "platform/qt/tray_icon.h"

#include <QPainter>
#include <QPainterPath>
#include <QStandardPaths>
#include <utility>

#include "platform/qt/painted_icon_engine.h"
#include "platform/qt/symbol.h"

namespace kivra::qt {

namespace {

constexpr double strokeWidth = 2;
constexpr double gapWidth = 5.5;

constexpr auto onName = "app.kivra.Kivra-symbolic";
constexpr auto offName = "app.kivra.Kivra-off-symbolic";

bool isInstalled(const QString& name) {
  return !QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                 "icons/hicolor/symbolic/apps/" + name + ".svg")
              .isEmpty();
}

class TrayIconEngine : public PaintedIconEngine {
 public:
  TrayIconEngine(std::string symbol, bool isOff, std::optional<QColor> color, QString name)
      : symbol_(std::move(symbol)), isOff_(isOff), color_(color), name_(std::move(name)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
    if (color_) {
      draw(*painter, rect, *color_);
      return;
    }
    const auto margin = rect.width() * 0.15;
    const auto* const ground = isOff_ ? &offGround : &programGround;
    drawGround(*painter, rect, *ground);
    draw(*painter, QRectF(rect).adjusted(margin, margin, -margin, -margin), Qt::white);
  }

  QIconEngine* clone() const override { return new TrayIconEngine(symbol_, isOff_, color_, name_); }

  // As far as hosts look at names, they prefer them to pictures.
  QString iconName() override { return name_; }

 private:
  static constexpr GroundColors offGround{0x8A8A8F, 0x636368};

  void draw(QPainter& painter, const QRectF& rect, const QColor& color) const {
    if (!isOff_) {
      drawSymbol(painter, rect, symbol_, color);
      return;
    }
    const auto unit = rect.width() / symbolSide;
    QPainterPath line(rect.topLeft() + QPointF(3.5, 3.5) * unit);
    line.lineTo(rect.topLeft() + QPointF(20.5, 20.5) * unit);
    QPainterPathStroker gap;
    gap.setWidth(gapWidth * unit);
    gap.setCapStyle(Qt::RoundCap);
    QPainterPath rest;
    rest.addRect(rect);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(rest.subtracted(gap.createStroke(line)));
    drawSymbol(painter, rect, symbol_, color);
    painter.setClipping(false);
    painter.strokePath(line, QPen(color, strokeWidth * unit, Qt::SolidLine, Qt::RoundCap));
    painter.restore();
  }

  std::string symbol_;
  bool isOff_;
  std::optional<QColor> color_;
  QString name_;
};

}  // namespace

QIcon trayIcon(const std::string& symbol, bool isOff, const TrayLook& look) {
  if (!hasSymbol(symbol)) return {};
  const QString name = isOff ? offName : onName;
  const auto isNamed = look.drawsNames && isInstalled(name);
  return QIcon(new TrayIconEngine(symbol, isOff, look.foreground, isNamed ? name : QString()));
}

}  // namespace kivra::qt
