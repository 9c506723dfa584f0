#pragma once

#include "platform/views.h"
#include "platform/windows.h"

namespace kivra::embedded {

/// How much room a tree of controls takes on a screen where every line and every control is as high
/// as the next and every text fits its line.
WindowSize sizeOf(const View& view);

}  // namespace kivra::embedded
