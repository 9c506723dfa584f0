#pragma once

#include <functional>
#include <istream>
#include <ostream>

namespace kivra::desk {

/// Plays a script of JSON Lines and writes what happens as JSON Lines. Answers the exit status: 0,
/// or 2 after a line that is not valid.
int playScript(std::istream& input, std::ostream& output);

}  // namespace kivra::desk
