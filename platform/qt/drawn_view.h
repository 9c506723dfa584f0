#pragma once

#include <QWidget>
#include <memory>

#include "platform/views.h"

namespace kivra::qt {

/// Where a node stands: in a row of a long list, where all rows are equally high, texts do not
/// wrap.
enum class Surroundings { window, listRow };

/// A node of the tree as it stands on the screen. Its widget belongs to the widget that it is put
/// into.
class DrawnView {
 public:
  virtual ~DrawnView() = default;

  virtual QWidget* widget() const = 0;

  /// Shows another node of the same kind in the same widget.
  virtual void update(const View& view) = 0;
};

/// Draws the node with native widgets.
std::unique_ptr<DrawnView> drawView(const View& view, Surroundings surroundings);

}  // namespace kivra::qt
