#pragma once

#include <QLabel>

#include "platform/views.h"

namespace kivra::qt {

/// A text that wraps and is never cut, in the font and the colour of its style.
class WrappingLabel : public QLabel {
 public:
  explicit WrappingLabel(QWidget* parent = nullptr);

  void setView(const View& view);

  QSize sizeHint() const override;
  int heightForWidth(int width) const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void applyStyle();
  void keepWholeText();

  View view_;
  bool isApplyingStyle_ = false;
};

}  // namespace kivra::qt
