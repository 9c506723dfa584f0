#pragma once

#include "x_server.h"

namespace kivra::soak {

/// The rows of an X server: a window of the tests, a GTK and a Qt 6 editor.
bool fillX11(e2e::XServer::Kind server, int words);

}  // namespace kivra::soak
