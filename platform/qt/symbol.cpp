#include "platform/qt/symbol.h"

#include <QGuiApplication>
#include <QPainterPath>
#include <QPalette>
#include <map>

#include "platform/qt/painted_icon_engine.h"

namespace kivra::qt {

namespace {

/// A drawing in outlines and filled areas.
struct Drawing {
  QPainterPath lines;
  QPainterPath areas;
  bool isDashed = false;
};

QPainterPath line(std::initializer_list<QPointF> points) {
  QPainterPath path(*points.begin());
  for (const auto& point : points) path.lineTo(point);
  return path;
}

QPainterPath circle(QPointF center, double radius) {
  QPainterPath path;
  path.addEllipse(center, radius, radius);
  return path;
}

void addKeyRow(QPainterPath& path, std::initializer_list<double> xs, double y) {
  for (const auto x : xs) path.addRoundedRect(QRectF(x, y, 2, 2), 0.5, 0.5);
}

Drawing keyboard() {
  Drawing drawing;
  drawing.lines.addRoundedRect(QRectF(2, 6, 20, 12.5), 2.5, 2.5);
  addKeyRow(drawing.areas, {5, 9, 13, 17}, 9);
  addKeyRow(drawing.areas, {5, 9, 13, 17}, 12);
  drawing.areas.addRoundedRect(QRectF(7, 15.2, 10, 1.6), 0.6, 0.6);
  return drawing;
}

Drawing keyboardWithEllipsis() {
  Drawing drawing;
  QPainterPath frame;
  frame.moveTo(22, 13);
  frame.lineTo(22, 8.5);
  frame.quadTo(22, 6, 19.5, 6);
  frame.lineTo(4.5, 6);
  frame.quadTo(2, 6, 2, 8.5);
  frame.lineTo(2, 16);
  frame.quadTo(2, 18.5, 4.5, 18.5);
  frame.lineTo(12, 18.5);
  drawing.lines = frame;
  addKeyRow(drawing.areas, {5, 9, 13, 17}, 9);
  addKeyRow(drawing.areas, {5, 9, 13}, 12);
  drawing.areas.addRoundedRect(QRectF(6.5, 15.2, 6, 1.6), 0.6, 0.6);
  for (const auto x : {16.0, 19.0, 22.0}) drawing.areas.addEllipse(QPointF(x, 18.2), 1.2, 1.2);
  return drawing;
}

Drawing filledCheckmark() {
  auto mark = line({{7.2, 12.6}, {10.6, 16}, {16.8, 8.6}});
  QPainterPathStroker stroker;
  stroker.setWidth(2);
  stroker.setCapStyle(Qt::RoundCap);
  stroker.setJoinStyle(Qt::RoundJoin);
  return {.lines = {}, .areas = circle({12, 12}, 10).subtracted(stroker.createStroke(mark))};
}

Drawing crossInCircle() {
  Drawing drawing{.lines = circle({12, 12}, 9), .areas = {}};
  drawing.lines.addPath(line({{8.7, 8.7}, {15.3, 15.3}}));
  drawing.lines.addPath(line({{15.3, 8.7}, {8.7, 15.3}}));
  return drawing;
}

Drawing warningTriangle() {
  Drawing drawing;
  drawing.lines = line({{12, 3.5}, {22, 20.5}, {2, 20.5}});
  drawing.lines.closeSubpath();
  drawing.lines.addPath(line({{12, 9.5}, {12, 14.5}}));
  drawing.areas = circle({12, 17.4}, 1.1);
  return drawing;
}

Drawing rightArrow() {
  Drawing drawing;
  drawing.lines = line({{4, 12}, {20, 12}});
  drawing.lines.addPath(line({{14, 6}, {20, 12}, {14, 18}}));
  return drawing;
}

Drawing trash() {
  Drawing drawing;
  drawing.lines = line({{4, 6.5}, {20, 6.5}});
  drawing.lines.addPath(line({{9, 6.2}, {9, 3.5}, {15, 3.5}, {15, 6.2}}));
  drawing.lines.addPath(line({{6, 6.8}, {7, 20.5}, {17, 20.5}, {18, 6.8}}));
  for (const auto x : {10.0, 14.0}) drawing.lines.addPath(line({{x, 10}, {x, 17}}));
  return drawing;
}

Drawing gear() {
  Drawing drawing;
  QPainterPath teeth = circle({12, 12}, 7.4);
  for (int i = 0; i < 8; ++i) {
    QPainterPath tooth;
    tooth.addRoundedRect(QRectF(-1.7, -10.6, 3.4, 5), 0.8, 0.8);
    QTransform place;
    place.translate(12, 12);
    place.rotate(45.0 * i);
    teeth = teeth.united(place.map(tooth));
  }
  drawing.lines = teeth;
  drawing.lines.addPath(circle({12, 12}, 3.2));
  return drawing;
}

Drawing globe() {
  Drawing drawing{.lines = circle({12, 12}, 9.5), .areas = {}};
  drawing.lines.addEllipse(QPointF(12, 12), 4.2, 9.5);
  drawing.lines.addPath(line({{2.5, 12}, {21.5, 12}}));
  drawing.lines.addPath(line({{4.2, 7}, {19.8, 7}}));
  drawing.lines.addPath(line({{4.2, 17}, {19.8, 17}}));
  return drawing;
}

Drawing book() {
  Drawing drawing;
  drawing.lines.addRoundedRect(QRectF(4, 2.5, 16, 19), 2, 2);
  drawing.lines.addPath(line({{4, 17.5}, {20, 17.5}}));
  drawing.lines.addPath(line({{8.8, 14.3}, {12, 6}, {15.2, 14.3}}));
  drawing.lines.addPath(line({{10, 11.5}, {14, 11.5}}));
  return drawing;
}

Drawing dashedCircle() { return {.lines = circle({12, 12}, 9), .areas = {}, .isDashed = true}; }

const std::map<std::string, Drawing>& drawings() {
  static const std::map<std::string, Drawing> all = {
      {"keyboard", keyboard()},
      {"keyboard.badge.ellipsis", keyboardWithEllipsis()},
      {"checkmark.circle.fill", filledCheckmark()},
      {"circle.dashed", dashedCircle()},
      {"xmark.circle", crossInCircle()},
      {"exclamationmark.triangle", warningTriangle()},
      {"arrow.right", rightArrow()},
      {"trash", trash()},
      {"gearshape", gear()},
      {"globe", globe()},
      {"character.book.closed", book()},
  };
  return all;
}

/// Draws the symbol anew at every size and in the colours of the moment.
class SymbolIconEngine : public PaintedIconEngine {
 public:
  explicit SymbolIconEngine(std::string name) : name_(std::move(name)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const auto palette = QGuiApplication::palette();
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
    drawSymbol(*painter, rect, name_, palette.color(group, role));
  }

  QIconEngine* clone() const override { return new SymbolIconEngine(name_); }

 private:
  std::string name_;
};

/// Wears its own colours, those of the installed icon: the panels that show it may be light or
/// dark.
class ApplicationIconEngine : public SymbolIconEngine {
 public:
  ApplicationIconEngine() : SymbolIconEngine(symbol) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
    const auto margin = rect.width() * 0.15;
    drawGround(*painter, rect, programGround);
    drawSymbol(*painter, QRectF(rect).adjusted(margin, margin, -margin, -margin), symbol,
               Qt::white);
  }

  QIconEngine* clone() const override { return new ApplicationIconEngine; }

 private:
  static constexpr const char* symbol = "keyboard.badge.ellipsis";
};

}  // namespace

bool hasSymbol(const std::string& name) { return drawings().contains(name); }

void drawSymbol(QPainter& painter, const QRectF& rect, const std::string& name,
                const QColor& color) {
  const auto found = drawings().find(name);
  if (found == drawings().end()) return;
  const auto& drawing = found->second;
  const auto size = std::min(rect.width(), rect.height());
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(rect.center().x() - size / 2, rect.center().y() - size / 2);
  painter.scale(size / symbolSide, size / symbolSide);
  QPen pen(color, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  if (drawing.isDashed) pen.setDashPattern({0.6, 2.18});
  painter.strokePath(drawing.lines, pen);
  painter.fillPath(drawing.areas, color);
  painter.restore();
}

QIcon symbolIcon(const std::string& name) {
  return hasSymbol(name) ? QIcon(new SymbolIconEngine(name)) : QIcon();
}

void drawGround(QPainter& painter, const QRect& rect, const GroundColors& colors) {
  const auto margin = rect.width() * 0.0625;
  const auto radius = rect.width() * 0.2;
  QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
  gradient.setColorAt(0, QColor::fromRgb(colors.top));
  gradient.setColorAt(1, QColor::fromRgb(colors.bottom));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(gradient);
  painter.drawRoundedRect(QRectF(rect).adjusted(margin, margin, -margin, -margin), radius, radius);
}

QIcon applicationIcon() { return QIcon(new ApplicationIconEngine); }

}  // namespace kivra::qt
