#pragma once

#include <memory>

#include "platform/qt/drawn_view.h"

namespace kivra::qt {

std::unique_ptr<DrawnView> drawText(Surroundings surroundings);
std::unique_ptr<DrawnView> drawLabel();
std::unique_ptr<DrawnView> drawSymbolNode();
std::unique_ptr<DrawnView> drawLabeledRow();
std::unique_ptr<DrawnView> drawProgress();
/// For nodes that show nothing; `expands`: takes the room that is left.
std::unique_ptr<DrawnView> drawNothing(bool expands);

}  // namespace kivra::qt
