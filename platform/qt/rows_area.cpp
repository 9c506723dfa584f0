#include "platform/qt/rows_area.h"

#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <utility>

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
}

void RowsArea::setRows(std::shared_ptr<const ViewRows> rows) {
  if (rows == rows_) return;
  rows_ = std::move(rows);
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
  if (event->type() == QEvent::Paint) paintLines();
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

}  // namespace kivra::qt
