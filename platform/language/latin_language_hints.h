#pragma once

#include <map>
#include <string>

#include "platform/language/letter_census.h"

namespace kivra {

/// How much the commonest little words and the letters of a text speak for each of the languages of
/// western Europe that are offered for translation: a point for each such word, less for a letter
/// that several of them use.
std::map<std::string, double> latinLanguageHints(const LetterCensus& census);

}  // namespace kivra
