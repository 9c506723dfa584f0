#pragma once

#include <QLabel>

#include "platform/views.h"

namespace kivra::qt {

/// A text on one line, which is shortened where it does not fit; the whole of it is in the tool
/// tip.
class ElidedLabel : public QLabel {
 public:
  void setView(const View& view);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  View view_;
};

}  // namespace kivra::qt
