#pragma once

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QRectF>
#include <string>

namespace kivra::qt {

/// Whether there is a drawing for this symbol name.
bool hasSymbol(const std::string& name);

/// The side of the square in which symbols are designed; they are drawn at any size.
inline constexpr double symbolSide = 24;

/// Draws the symbol into the rectangle in one colour, at any size.
void drawSymbol(QPainter& painter, const QRectF& rect, const std::string& name,
                const QColor& color);

/// The symbol as an icon in the colours of the palette; null when there is no such symbol.
QIcon symbolIcon(const std::string& name);

/// The colours of a ground, from its top to its bottom, as 0xRRGGBB.
struct GroundColors {
  unsigned int top;
  unsigned int bottom;
};

/// Those of the program's own icon.
inline constexpr GroundColors programGround{0x4F7DF0, 0x2748B8};

/// A rounded ground for a symbol.
void drawGround(QPainter& painter, const QRect& rect, const GroundColors& colors);

/// What lists of windows show for the program.
QIcon applicationIcon();

}  // namespace kivra::qt
