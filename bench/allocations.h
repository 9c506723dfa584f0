#pragma once

#include <cstddef>

namespace kivra {

/// How often this program has asked for memory with `new`.
std::size_t allocationCount();

}  // namespace kivra
