#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace kivra::control {

/// A line of a text, without what ends it.
struct Line {
  std::size_t number = 0;  ///< from 1
  std::string_view text;
};

/// Lines end with LF or CR LF; the last one need not.
inline std::vector<Line> linesOf(std::string_view text) {
  std::vector<Line> lines;
  while (!text.empty()) {
    const auto end = text.find('\n');
    auto line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back({lines.size() + 1, line});
  }
  return lines;
}

}  // namespace kivra::control
