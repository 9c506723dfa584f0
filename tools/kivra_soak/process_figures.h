#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace kivra::soak {

/// What the program's processes take together.
struct ProcessFigures {
  int processes = 0;
  int descriptors = 0;
  long memory = 0;  ///< kilobytes: PSS, the pages shared with others divided among them
};

/// The processes of the program and its guard on this display.
std::vector<pid_t> processesOn(const std::string& display);

/// Processes that are gone count for nothing.
ProcessFigures figuresOf(const std::vector<pid_t>& processes);

}  // namespace kivra::soak
