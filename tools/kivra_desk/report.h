#pragma once

#include "session.h"

namespace kivra::desk {

/// The state of the desktop and the program.
embedded::Json report(Session& session);

}  // namespace kivra::desk
