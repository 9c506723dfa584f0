#pragma once

#include <cstddef>
#include <string_view>

namespace kivra {

/// The Levenshtein distance over user-perceived characters: insertions, deletions and substitutions
/// cost 1 each.
std::size_t editDistance(std::string_view a, std::string_view b);

}  // namespace kivra
