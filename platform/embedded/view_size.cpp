#include "platform/embedded/view_size.h"

#include <algorithm>

namespace kivra::embedded {

namespace {

constexpr int lineHeight = 20;
constexpr int characterWidth = 8;

WindowSize ownSize(const View& view) {
  switch (view.kind) {
    case ViewKind::empty:
    case ViewKind::spacer:
    case ViewKind::vStack:
    case ViewKind::hStack:
    case ViewKind::form:
      return {};
    default:
      return {static_cast<int>(view.text.size()) * characterWidth, lineHeight};
  }
}

}  // namespace

WindowSize sizeOf(const View& view) {
  auto size = ownSize(view);
  const auto isRow = view.kind == ViewKind::hStack || view.kind == ViewKind::labeledRow;
  for (std::size_t i = 0; i < view.children.size(); ++i) {
    const auto child = sizeOf(view.children[i]);
    const auto gap = i == 0 ? 0 : view.spacing;
    if (isRow) {
      size = {size.width + child.width + gap, std::max(size.height, child.height)};
    } else {
      size = {std::max(size.width, child.width), size.height + child.height + gap};
    }
  }
  const auto width = size.width + 2 * view.padding;
  const auto height = size.height + 2 * view.padding;
  return {view.width > 0 ? view.width : width, view.height > 0 ? view.height : height};
}

}  // namespace kivra::embedded
