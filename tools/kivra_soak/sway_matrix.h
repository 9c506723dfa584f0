#pragma once

#include <string>

namespace kivra::soak {

/// The rows of sway: a window of the tests and programs of all toolkits, or only the named one.
bool fillSway(int words, const std::string& only);

}  // namespace kivra::soak
