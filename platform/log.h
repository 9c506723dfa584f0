#pragma once

#include <string_view>

namespace kivra {

/// The system log. Typed text never goes there.
class Log {
 public:
  virtual ~Log() = default;

  /// Writes one line.
  virtual void log(std::string_view line) = 0;
};

}  // namespace kivra
