#pragma once

#include <QWidget>

#include "platform/views.h"

namespace kivra::qt {

/// Shows a symbol as high as a line of the text in its style.
class SymbolWidget : public QWidget {
 public:
  SymbolWidget();

  void setView(const View& view);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  View view_;
};

}  // namespace kivra::qt
