#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kivra::control {

/// The text that a YAML scalar on one line stands for: plain, in single or in double quotes, with a
/// comment behind it or not. Nothing for anything else.
std::optional<std::string> yamlScalar(std::string_view value);

/// The text as a YAML scalar in double quotes.
std::string yamlQuoted(std::string_view text);

}  // namespace kivra::control
