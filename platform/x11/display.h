#pragma once

namespace kivra::x11 {

/// Whether the X server of $DISPLAY answers.
bool isDisplayThere();

}  // namespace kivra::x11
