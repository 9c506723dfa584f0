#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

#include "platform/views.h"

namespace kivra::qt {

bool hasStyle(const View& view, ViewStyle style);

/// The font that the styles of a node ask for, made from the font around it.
QFont styledFont(const View& view, const QFont& base);

/// The colour that the styles of a node ask for on this palette, light or dark.
QColor styledColor(const View& view, const QPalette& palette);

/// A quieter text, the ground of a group and the lines in it.
QColor secondaryColor(const QPalette& palette);
/// Of what stands in an empty field.
QColor placeholderColor(const QPalette& palette);
QColor groundColor(const QPalette& palette);
QColor lineColor(const QPalette& palette);

}  // namespace kivra::qt
