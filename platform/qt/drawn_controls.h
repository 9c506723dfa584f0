#pragma once

#include <memory>

#include "platform/qt/drawn_view.h"

namespace kivra::qt {

std::unique_ptr<DrawnView> drawToggle();
std::unique_ptr<DrawnView> drawPicker();
/// `isSecure`: what is typed is hidden.
std::unique_ptr<DrawnView> drawField(bool isSecure);
/// For a button with the look of `view`.
std::unique_ptr<DrawnView> drawButton(const View& view);

}  // namespace kivra::qt
