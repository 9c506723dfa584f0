#pragma once

#include <istream>
#include <ostream>
#include <string>

namespace kivra::desk {

struct PlainOptions {
  std::string source = "us";  ///< identifier of the source selected at the start
  bool trace = false;         ///< write every posted event to the log stream
};

/// Types the text of `input` and writes what ends up in the text field, line by line. Posted events
/// go to `log` when asked for.
void typePlain(std::istream& input, std::ostream& output, std::ostream& log,
               const PlainOptions& options);

}  // namespace kivra::desk
