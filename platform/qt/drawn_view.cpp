#include "platform/qt/drawn_view.h"

#include "platform/qt/drawn_containers.h"
#include "platform/qt/drawn_controls.h"
#include "platform/qt/drawn_texts.h"

namespace kivra::qt {

namespace {

std::unique_ptr<DrawnView> blank(const View& view, Surroundings surroundings) {
  switch (view.kind) {
    case ViewKind::vStack:
    case ViewKind::hStack:
      return drawStack(view, surroundings);
    case ViewKind::form:
      return drawForm();
    case ViewKind::section:
      return drawSection();
    case ViewKind::tabs:
      return drawTabs();
    case ViewKind::text:
      return drawText(surroundings);
    case ViewKind::label:
      return drawLabel();
    case ViewKind::symbol:
      return drawSymbolNode();
    case ViewKind::labeledRow:
      return drawLabeledRow();
    case ViewKind::toggle:
      return drawToggle();
    case ViewKind::picker:
      return drawPicker();
    case ViewKind::textField:
      return drawField(/*isSecure=*/false);
    case ViewKind::secureField:
      return drawField(/*isSecure=*/true);
    case ViewKind::button:
      return drawButton(view);
    case ViewKind::progress:
      return drawProgress();
    case ViewKind::spacer:
      return drawNothing(/*expands=*/true);
    case ViewKind::empty:
    case ViewKind::tab:  // drawn by its tabs
      break;
  }
  return drawNothing(/*expands=*/false);
}

}  // namespace

std::unique_ptr<DrawnView> drawView(const View& view, Surroundings surroundings) {
  auto drawn = blank(view, surroundings);
  if (view.width > 0) drawn->widget()->setFixedWidth(view.width);
  if (view.height > 0) drawn->widget()->setFixedHeight(view.height);
  drawn->update(view);
  return drawn;
}

}  // namespace kivra::qt
