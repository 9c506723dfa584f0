#pragma once

#include <QBoxLayout>
#include <memory>
#include <vector>

#include "platform/qt/drawn_view.h"

namespace kivra::qt {

/// The children of a node in a layout. A child that is still there keeps its widget, whatever came
/// or went around it.
class DrawnChildren {
 public:
  DrawnChildren(QBoxLayout& layout, Surroundings surroundings)
      : layout_(layout), surroundings_(surroundings) {}

  void update(const std::vector<View>& views);

  std::size_t count() const { return children_.size(); }

 private:
  struct Child {
    View shown;
    std::unique_ptr<DrawnView> drawn;
  };

  void drop(std::size_t begin, std::size_t end);
  std::size_t findSame(const View& view, std::size_t from) const;

  QBoxLayout& layout_;
  Surroundings surroundings_;
  std::vector<Child> children_;
};

}  // namespace kivra::qt
