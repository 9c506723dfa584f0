#include "platform/session/standard_error_log.h"

#include <iostream>

namespace kivra {

void StandardErrorLog::log(std::string_view line) { std::cerr << line << std::endl; }

}  // namespace kivra
