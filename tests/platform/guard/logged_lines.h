#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/log.h"

namespace kivra::guard {

/// A log that can be read.
struct LoggedLines : Log {
  void log(std::string_view line) override { lines.emplace_back(line); }
  std::vector<std::string> lines;
};

}  // namespace kivra::guard
