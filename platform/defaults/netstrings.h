#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Lists of byte strings as one string, "5:hello,2:hi,": every byte is kept, which JSON would not
/// do, and the text can still be read.
namespace kivra::netstrings {

std::string encoded(const std::vector<std::string>& strings);

/// Nothing when the text is not exactly such a list.
std::optional<std::vector<std::string>> decoded(std::string_view text);

}  // namespace kivra::netstrings
