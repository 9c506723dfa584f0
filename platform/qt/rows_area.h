#pragma once

#include <QAbstractScrollArea>
#include <QElapsedTimer>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/qt/drawn_view.h"

namespace kivra::qt {

/// A list of equally high rows, of which only those in sight are drawn: it opens and scrolls at
/// once however long it is. While it has the focus one row is chosen: the arrows choose another,
/// letters the first that begins with them, and Delete removes it.
class RowsArea : public QAbstractScrollArea {
 public:
  RowsArea();

  void setRows(std::shared_ptr<const ViewRows> rows);

  QSize sizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  bool viewportEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  using Drawn = std::shared_ptr<DrawnView>;

  int count() const { return rows_ ? static_cast<int>(rows_->count()) : 0; }
  void measure();
  void updateScrollBar();
  void placeRows();
  void retireAll(std::map<std::string, Drawn>& rows);
  Drawn rowWidget(const View& view);
  void paintLines();
  void paintChosen();
  void choose(int index);
  bool handleKey(const QKeyEvent& event);
  bool moveChoice(int key);
  bool find(const QString& letters);

  std::shared_ptr<const ViewRows> rows_;
  int rowHeight_ = 0;
  std::map<std::string, Drawn> inSight_;  // by the rows' identities
  std::vector<Drawn> spare_;
  int chosen_ = 0;  ///< shown while the list has the focus
  QString typed_;   ///< the letters that are searched for
  QElapsedTimer sinceTyped_;
};

}  // namespace kivra::qt
