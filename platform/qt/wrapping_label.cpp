#include "platform/qt/wrapping_label.h"

#include <QApplication>
#include <QEvent>

#include "platform/qt/view_style.h"

namespace kivra::qt {

WrappingLabel::WrappingLabel(QWidget* parent) : QLabel(parent) {
  setWordWrap(true);
  setTextFormat(Qt::PlainText);  // what users type is shown as typed
}

void WrappingLabel::setView(const View& view) {
  view_ = view;
  const auto shown = QString::fromStdString(view.text);
  if (shown != text()) setText(shown);
  applyStyle();
  keepWholeText();
}

QSize WrappingLabel::sizeHint() const {
  const auto hint = QLabel::sizeHint();  // a few lines even of a text that fits on one
  return {hint.width(), heightForWidth(width())};
}

// That of QLabel is never less than the minimum that was set for another width.
int WrappingLabel::heightForWidth(int width) const {
  const QRect room(0, 0, width, QWIDGETSIZE_MAX);
  return fontMetrics().boundingRect(room, Qt::TextWordWrap, text()).height();
}

void WrappingLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  keepWholeText();
}

void WrappingLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  const auto isTheme =
      event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationFontChange;
  if (isTheme && !isApplyingStyle_) applyStyle();
}

void WrappingLabel::applyStyle() {
  isApplyingStyle_ = true;
  setFont(styledFont(view_, QApplication::font()));
  const auto surroundings =
      parentWidget() != nullptr ? parentWidget()->palette() : QApplication::palette();
  auto colors = surroundings;
  colors.setColor(QPalette::WindowText, styledColor(view_, surroundings));
  setPalette(colors);
  isApplyingStyle_ = false;
}

// Layouts inside scrolled areas know nothing of heights that depend on widths.
void WrappingLabel::keepWholeText() {
  const auto needed = heightForWidth(width());
  if (needed != minimumHeight()) setMinimumHeight(needed);
}

}  // namespace kivra::qt
