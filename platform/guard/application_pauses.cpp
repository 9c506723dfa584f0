#include "platform/guard/application_pauses.h"

#include <algorithm>
#include <array>

namespace kivra::guard {

namespace {

using namespace std::chrono_literals;

struct Row {
  std::string_view begin;  // of the identifier
  std::chrono::milliseconds pause;
};

constexpr std::array rows = {
    // Writer puts a burst of BackSpaces and letters in the wrong order, ours or not: 4 of 4 words
    // wrong without a pause. 20 ms were enough on a quiet machine, not on one with ten busy
    // programs.
    Row{"org.libreoffice", 60ms},
    Row{"libreoffice", 60ms},
    Row{"soffice", 60ms},
};

}  // namespace

std::chrono::milliseconds pauseAfterErasing(std::string_view identifier) {
  const auto row = std::ranges::find_if(
      rows, [&](const Row& candidate) { return identifier.starts_with(candidate.begin); });
  return row == rows.end() ? 0ms : row->pause;
}

}  // namespace kivra::guard
