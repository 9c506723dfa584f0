#pragma once

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QRectF>
#include <string>

namespace kivra::qt {

/// Whether there is a drawing for this symbol name.
bool hasSymbol(const std::string& name);

/// Draws the symbol into the rectangle in one colour, at any size.
void drawSymbol(QPainter& painter, const QRectF& rect, const std::string& name,
                const QColor& color);

/// The symbol as an icon in the colours of the palette; null when there is no such symbol.
QIcon symbolIcon(const std::string& name);

/// What lists of windows show for the program.
QIcon applicationIcon();

}  // namespace kivra::qt
