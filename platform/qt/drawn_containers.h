#pragma once

#include <memory>

#include "platform/qt/drawn_view.h"

namespace kivra::qt {

/// For a stack with the direction and the look of `view`.
std::unique_ptr<DrawnView> drawStack(const View& view, Surroundings surroundings);
std::unique_ptr<DrawnView> drawForm();
std::unique_ptr<DrawnView> drawSection();
std::unique_ptr<DrawnView> drawTabs();

}  // namespace kivra::qt
