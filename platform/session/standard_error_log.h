#pragma once

#include "platform/log.h"

namespace kivra {

/// Standard error, which a desktop session takes into its journal.
class StandardErrorLog : public Log {
 public:
  void log(std::string_view line) override;
};

}  // namespace kivra
