#pragma once

#include <cstddef>
#include <istream>
#include <map>
#include <string>
#include <vector>

#include "platform/language_recognizer.h"

namespace kivra::quality {

/// How many sentences of a language were recognised.
struct Recognized {
  std::size_t sentences = 0;
  std::size_t right = 0;
  std::vector<std::string> mistakes;  ///< "answer: sentence"
};

/// Asks the recogniser for every line "language<TAB>sentence"; "none" stands for no answer. An
/// answer counts as right when it begins with the language's code.
std::map<std::string, Recognized> recognizedByLanguage(LanguageRecognizer& recognizer,
                                                       std::istream& sentences);

}  // namespace kivra::quality
