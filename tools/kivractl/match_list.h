#pragma once

#include <string>
#include <string_view>

#include "dictionary_text.h"

namespace kivra::control {

/// Reads the list under `matches:` of a text expander's YAML: each element with one `trigger` and a
/// `replace` that is plain text becomes a pair; every other one is left out.
DictionaryText readMatches(std::string_view text);

std::string matchLines(std::string_view pattern, std::string_view replacement);

}  // namespace kivra::control
