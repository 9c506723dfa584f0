#include "platform/qt/rows_area.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "platform/qt/accessible_role.h"
#include "platform/qt/shown_text.h"
#include "platform/qt/view_style.h"

namespace kivra::qt {

namespace {

constexpr int margin = 12;   // beside a row
constexpr int leading = 12;  // above and below a row, together
constexpr int fewestShown = 3;

}  // namespace

RowsArea::RowsArea() {
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setFocusPolicy(Qt::StrongFocus);
  viewport()->setAutoFillBackground(false);
  setAccessibleRole(*viewport(), QAccessible::List);
}

void RowsArea::setRows(std::shared_ptr<const ViewRows> rows) {
  if (rows == rows_) return;
  rows_ = std::move(rows);
  chosen_ = std::clamp(chosen_, 0, std::max(0, count() - 1));
  measure();
  updateScrollBar();
  placeRows();
  updateGeometry();
}

// What it wishes for the window makes room for, by scrolling all of its sections; it gets more
// where there is more.
QSize RowsArea::sizeHint() const { return {200, std::min(count(), fewestShown) * rowHeight_}; }

void RowsArea::measure() {
  if (count() == 0) return;
  const auto row = rowWidget(rows_->row(0));
  rowHeight_ = row->widget()->sizeHint().height() + leading;
  spare_.push_back(row);
  setMinimumHeight(std::min(count(), fewestShown) * rowHeight_);
  setMaximumHeight(count() * rowHeight_);
}

void RowsArea::updateScrollBar() {
  auto* const bar = verticalScrollBar();
  bar->setRange(0, std::max(0, count() * rowHeight_ - viewport()->height()));
  bar->setPageStep(viewport()->height());
  bar->setSingleStep(rowHeight_);
}

void RowsArea::placeRows() {
  std::map<std::string, Drawn> before;
  std::swap(before, inSight_);
  const auto top = verticalScrollBar()->value();
  const auto begin = rowHeight_ > 0 ? top / rowHeight_ : 0;
  const auto end = rowHeight_ > 0 ? (top + viewport()->height()) / rowHeight_ + 1 : 0;
  std::vector<int> missing;
  const auto place = [&](int index, const Drawn& row) {
    row->widget()->setAccessibleName(shownLine(rows_->searchText(static_cast<std::size_t>(index))));
    row->widget()->setGeometry(margin, index * rowHeight_ - top, viewport()->width() - 2 * margin,
                               rowHeight_);
    row->widget()->show();
  };
  for (auto i = begin; i < std::min(end, count()); ++i) {
    const auto index = static_cast<std::size_t>(i);
    const auto kept = before.find(rows_->id(index));
    if (kept == before.end()) {
      missing.push_back(i);
      continue;
    }
    kept->second->update(rows_->row(index));
    place(i, kept->second);
    inSight_.insert(before.extract(kept));
  }
  retireAll(before);
  for (const auto i : missing) {
    const auto index = static_cast<std::size_t>(i);
    const auto row = rowWidget(rows_->row(index));
    place(i, row);
    inSight_.emplace(rows_->id(index), row);
  }
  viewport()->update();
}

void RowsArea::retireAll(std::map<std::string, Drawn>& rows) {
  for (auto& [id, row] : rows) {
    row->widget()->hide();  // a hidden row loses the focus, which must not pass to another entry
    spare_.push_back(std::move(row));
  }
  rows.clear();
}

RowsArea::Drawn RowsArea::rowWidget(const View& view) {
  if (spare_.empty()) {
    Drawn row = drawView(view, Surroundings::listRow);
    row->widget()->setParent(viewport());
    setAccessibleRole(*row->widget(), QAccessible::ListItem);
    return row;
  }
  auto row = std::move(spare_.back());
  spare_.pop_back();
  row->update(view);
  return row;
}

void RowsArea::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  updateScrollBar();
  placeRows();
}

void RowsArea::scrollContentsBy(int /*dx*/, int /*dy*/) { placeRows(); }

bool RowsArea::viewportEvent(QEvent* event) {
  const auto handled = QAbstractScrollArea::viewportEvent(event);
  if (event->type() == QEvent::Paint) {
    paintLines();
    if (hasFocus() && count() > 0) paintChosen();
  }
  return handled;
}

void RowsArea::paintLines() {
  QPainter painter(viewport());
  painter.setPen(lineColor(palette()));
  const auto offset = verticalScrollBar()->value() % std::max(1, rowHeight_);
  for (auto y = -offset; rowHeight_ > 0 && y < viewport()->height(); y += rowHeight_) {
    if (y > 0) painter.drawLine(margin, y, viewport()->width() - margin, y);
  }
}

void RowsArea::paintChosen() {
  constexpr int inset = 4;
  constexpr double radius = 5;
  const QRectF row(inset, chosen_ * rowHeight_ - verticalScrollBar()->value(),
                   viewport()->width() - 2 * inset, rowHeight_);
  auto ground = palette().color(QPalette::Highlight);
  QPainter painter(viewport());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ground, 1.5));
  ground.setAlphaF(0.18F);
  painter.setBrush(ground);
  painter.drawRoundedRect(row.adjusted(1, 1, -1, -1), radius, radius);
}

void RowsArea::choose(int index) {
  chosen_ = std::clamp(index, 0, std::max(0, count() - 1));
  auto* const bar = verticalScrollBar();
  const auto top = chosen_ * rowHeight_;
  const auto height = viewport()->height();
  bar->setValue(std::clamp(bar->value(), std::max(0, top + rowHeight_ - height), top));
  viewport()->update();
  if (count() == 0) return;
  const auto row = inSight_.find(rows_->id(static_cast<std::size_t>(chosen_)));
  if (row == inSight_.end()) return;
  QAccessibleEvent focus(row->second->widget(), QAccessible::Focus);
  QAccessible::updateAccessibility(&focus);
}

bool RowsArea::moveChoice(int key) {
  const auto page = std::max(1, rowHeight_ > 0 ? viewport()->height() / rowHeight_ : 1);
  const std::map<int, int> targets = {{Qt::Key_Up, chosen_ - 1},
                                      {Qt::Key_Down, chosen_ + 1},
                                      {Qt::Key_PageUp, chosen_ - page},
                                      {Qt::Key_PageDown, chosen_ + page},
                                      {Qt::Key_Home, 0},
                                      {Qt::Key_End, count() - 1}};
  const auto target = targets.find(key);
  if (target == targets.end()) return false;
  choose(target->second);
  return true;
}

bool RowsArea::find(const QString& letters) {
  if (letters.isEmpty() || !letters.front().isPrint()) return false;
  if (!sinceTyped_.isValid() || sinceTyped_.elapsed() > QApplication::keyboardInputInterval()) {
    typed_.clear();
  }
  sinceTyped_.start();
  typed_ += letters;
  for (int i = 0; i < count(); ++i) {
    const auto text = QString::fromStdString(rows_->searchText(static_cast<std::size_t>(i)));
    if (!text.startsWith(typed_, Qt::CaseInsensitive)) continue;
    choose(i);
    break;
  }
  return true;
}

bool RowsArea::handleKey(const QKeyEvent& event) {
  constexpr auto shortcuts = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
  if (event.modifiers() & shortcuts) return false;
  if (event.key() == Qt::Key_Delete && count() > 0) {
    const auto rows = rows_;  // they are others once one is gone
    rows->remove(static_cast<std::size_t>(chosen_));
    return true;
  }
  return moveChoice(event.key()) || find(event.text());
}

void RowsArea::keyPressEvent(QKeyEvent* event) { event->setAccepted(handleKey(*event)); }

void RowsArea::mousePressEvent(QMouseEvent* event) {
  if (rowHeight_ == 0) return;
  setFocus(Qt::MouseFocusReason);
  choose((event->pos().y() + verticalScrollBar()->value()) / rowHeight_);
}

void RowsArea::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  choose(chosen_);
}

void RowsArea::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  viewport()->update();
}

}  // namespace kivra::qt
