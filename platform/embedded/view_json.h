#pragma once

#include "platform/embedded/effects.h"
#include "platform/views.h"

namespace kivra::embedded {

/// The tree of controls as JSON. A picker's (tabs') value is the title of the chosen option (tab),
/// null when none is chosen.
Json viewJson(const View& view);

}  // namespace kivra::embedded
