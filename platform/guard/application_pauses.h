#pragma once

#include <chrono>
#include <string_view>

namespace kivra::guard {

/// How long an application needs between the erasing of a word and the letters that take its place;
/// 0 for most. Keys typed meanwhile wait. `identifier` is the frontmost application's.
std::chrono::milliseconds pauseAfterErasing(std::string_view identifier);

}  // namespace kivra::guard
