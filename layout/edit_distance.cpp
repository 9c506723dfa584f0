#include "layout/edit_distance.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "support/text.h"

namespace kivra {

std::size_t editDistance(std::string_view a, std::string_view b) {
  const auto from = text::characters(a);
  const auto to = text::characters(b);
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < from.size(); ++i) {
    auto diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const auto substitution = diagonal + (from[i] == to[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({substitution, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace kivra
