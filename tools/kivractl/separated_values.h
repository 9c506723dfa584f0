#pragma once

#include <string>
#include <string_view>

#include "dictionary_text.h"

namespace kivra::control {

/// A line for each pair, with a tab in it. Empty lines are passed over.
DictionaryText readTabs(std::string_view text);
std::string tabLine(std::string_view pattern, std::string_view replacement);

/// Records of two fields with a comma between them; a field in double quotes may hold commas, line
/// breaks and, doubled, double quotes.
DictionaryText readCommas(std::string_view text);
std::string commaLine(std::string_view pattern, std::string_view replacement);

}  // namespace kivra::control
