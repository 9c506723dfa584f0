#pragma once

#include <QWidget>

namespace kivra::qt {

/// A rounded ground on which the rows of a group stand.
class GroundWidget : public QWidget {
 public:
  explicit GroundWidget(QWidget* parent = nullptr) : QWidget(parent) {}

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kivra::qt
