#pragma once

#include <string>
#include <string_view>

namespace kivra {

/// The language of an identifier without script and region ("en" of "en-US"), in lower case.
std::string baseLanguage(std::string_view identifier);

/// The region of an identifier ("US" of "en-US", "eng_US"), in upper case; empty without one.
std::string regionOf(std::string_view identifier);

/// The language as Apertium's packages call it, with three letters ("eng" of "en-US"); languages
/// with none known keep what they have.
std::string threeLetterLanguage(std::string_view identifier);

}  // namespace kivra
