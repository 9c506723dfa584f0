#include "platform/qt/drawn_children.h"

#include <algorithm>
#include <utility>

namespace kivra::qt {

namespace {

bool isNamedByText(ViewKind kind) {
  return kind == ViewKind::toggle || kind == ViewKind::picker || kind == ViewKind::labeledRow ||
         kind == ViewKind::tab;
}

bool isSame(const View& before, const View& now) {
  return before.kind == now.kind && before.placeholder == now.placeholder &&
         (!isNamedByText(now.kind) || before.text == now.text);
}

}  // namespace

void DrawnChildren::update(const std::vector<View>& views) {
  for (std::size_t i = 0; i < views.size(); ++i) {
    const auto same = findSame(views[i], i);
    if (same < children_.size()) {
      drop(i, same);
      children_[i].drawn->update(views[i]);
      children_[i].shown = views[i];
    } else {
      auto drawn = drawView(views[i], surroundings_);
      layout_.insertWidget(static_cast<int>(i), drawn->widget());
      children_.insert(children_.begin() + static_cast<std::ptrdiff_t>(i),
                       Child{views[i], std::move(drawn)});
    }
  }
  drop(views.size(), children_.size());
}

std::size_t DrawnChildren::findSame(const View& view, std::size_t from) const {
  auto index = from;
  while (index < children_.size() && !isSame(children_[index].shown, view)) ++index;
  return index;
}

void DrawnChildren::drop(std::size_t begin, std::size_t end) {
  for (auto i = begin; i < end; ++i) {
    auto* const widget = children_[i].drawn->widget();
    layout_.removeWidget(widget);
    widget->hide();
    widget->deleteLater();  // it may be the one that the user has just pressed
  }
  const auto first = children_.begin();
  children_.erase(first + static_cast<std::ptrdiff_t>(begin),
                  first + static_cast<std::ptrdiff_t>(end));
}

}  // namespace kivra::qt
