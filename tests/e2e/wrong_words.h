#pragma once

#include <string>

namespace kivra::e2e {

/// Words of which each is due for a correction, as keys of the English layout: the layout that the
/// word before has selected is the wrong one for it.
std::string wrongWords(int count);

struct WordCount {
  int right = 0;
  int whole = 0;  ///< left uncorrected, with all their letters
  int wrong = 0;  ///< anything else, missing words included
  std::string firstDifference;
};

/// Word by word, so that a failure shows the place and not the whole text.
WordCount compareWords(const std::string& text, const std::string& expected);

}  // namespace kivra::e2e
