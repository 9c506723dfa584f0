#include "platform/qt/view_style.h"

#include <algorithm>
#include <cmath>

namespace kivra::qt {

namespace {

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() <
         palette.color(QPalette::WindowText).lightness();
}

QColor mixed(const QColor& a, const QColor& b, double shareOfB) {
  const auto mix = [&](int x, int y) {
    return static_cast<int>(std::lround(x * (1 - shareOfB) + y * shareOfB));
  };
  return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

QColor mixed(const QPalette& palette, double shareOfText) {
  return mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), shareOfText);
}

/// Sizes of the named fonts, as shares of the ordinary one.
double sizeFactor(const View& view) {
  if (hasStyle(view, ViewStyle::large)) return 36.0 / 13;
  if (hasStyle(view, ViewStyle::title2)) return 17.0 / 13;
  if (hasStyle(view, ViewStyle::title3)) return 15.0 / 13;
  if (hasStyle(view, ViewStyle::callout)) return 11.5 / 13;
  return 1;
}

}  // namespace

bool hasStyle(const View& view, ViewStyle style) {
  return std::ranges::find(view.style, style) != view.style.end();
}

QFont styledFont(const View& view, const QFont& base) {
  auto font = base;
  if (base.pointSizeF() > 0) {
    font.setPointSizeF(base.pointSizeF() * sizeFactor(view));
  } else {  // some themes give the size of their font in pixels
    font.setPixelSize(static_cast<int>(std::lround(base.pixelSize() * sizeFactor(view))));
  }
  if (hasStyle(view, ViewStyle::bold) || hasStyle(view, ViewStyle::headline)) font.setBold(true);
  return font;
}

QColor styledColor(const View& view, const QPalette& palette) {
  const auto dark = isDark(palette);
  if (hasStyle(view, ViewStyle::green))
    return dark ? QColor(0x32, 0xD1, 0x58) : QColor(0x1E, 0x7D, 0x34);
  if (hasStyle(view, ViewStyle::orange))
    return dark ? QColor(0xFF, 0x9F, 0x0A) : QColor(0xB4, 0x53, 0x09);
  if (hasStyle(view, ViewStyle::accent)) return palette.color(QPalette::Highlight);
  if (hasStyle(view, ViewStyle::secondary)) return secondaryColor(palette);
  return palette.color(QPalette::WindowText);
}

QColor secondaryColor(const QPalette& palette) { return mixed(palette, 0.66); }

QColor placeholderColor(const QPalette& palette) {
  return mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.55);
}

QColor groundColor(const QPalette& palette) {
  return isDark(palette) ? mixed(palette, 0.07)
                         : mixed(palette.color(QPalette::Window), Qt::white, 0.6);
}

QColor lineColor(const QPalette& palette) { return mixed(palette, 0.13); }

}  // namespace kivra::qt
