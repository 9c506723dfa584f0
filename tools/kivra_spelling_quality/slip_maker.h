#pragma once

#include <string>
#include <string_view>

namespace kivra::quality {

enum class SlipKind {
  hand,  ///< a key beside the right one, a letter left out, doubled or too many, two letters
         ///< swapped
  ear,   ///< letters written as they sound
};

/// A list "typed<TAB>meant" of words of five letters or more from a running text, each with one
/// slip; the same text gives the same list. Only words that are all lower-case letters are taken,
/// at most `count` of them, spread over the text.
std::string slipsIn(std::string_view text, SlipKind kind, std::size_t count);

}  // namespace kivra::quality
