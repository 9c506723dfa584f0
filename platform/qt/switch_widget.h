#pragma once

#include <QAbstractButton>

namespace kivra::qt {

/// An on-off switch in the colours of the palette.
class SwitchWidget : public QAbstractButton {
 public:
  explicit SwitchWidget(QWidget* parent = nullptr);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kivra::qt
