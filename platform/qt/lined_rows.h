#pragma once

#include <QVBoxLayout>
#include <QWidget>

namespace kivra::qt {

/// Rows one below the other with a line between each two.
class LinedRows : public QWidget {
 public:
  LinedRows();

  QVBoxLayout& rows() { return *rows_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QVBoxLayout* rows_;
};

}  // namespace kivra::qt
