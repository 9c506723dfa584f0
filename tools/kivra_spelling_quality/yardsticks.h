#pragma once

#include <optional>
#include <string>
#include <vector>

#include "spelling_quality.h"

namespace kivra::quality {

/// Hunspell with its first suggestion for everything that it does not know.
Oracle hunspellYardstick();

/// A word of a list or text, and its language.
struct AskedWord {
  std::string word;
  bool russian = false;
};

/// Aspell with its first suggestion, asked at once about those of `words` that are all letters; it
/// knows nothing of others.
/// Nothing where aspell is not installed for both languages.
std::optional<Oracle> aspellYardstick(const std::vector<AskedWord>& words);

/// An oracle that knows no word and notes in `asked` what it is asked about, each word once.
Oracle recorder(std::vector<AskedWord>& asked);

}  // namespace kivra::quality
