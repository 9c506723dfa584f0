#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kivra {

/// The texts of a DeepL reply: its member `list` ("translations", "improvements") is an array of
/// objects with a string "text" each. Throws PlatformError for anything else; the description says
/// nothing of the content.
std::vector<std::string> deepLTexts(std::string_view body, const char* list);

}  // namespace kivra
