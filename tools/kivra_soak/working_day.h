#pragma once

#include <string>
#include <vector>

namespace kivra::soak {

/// What people type in a working day, as they mean it. Every line begins with a word that the other
/// layout cannot mean, so that it comes out right whatever layout it is begun in.
const std::vector<std::string>& lines();

/// Single words in either language, which come out right from either layout.
const std::vector<std::string>& words();

/// Further ones whose change is taken back, which leaves them alone from then on.
const std::vector<std::string>& undoneWords();

struct Mend {
  std::string typed;
  std::string meant;
};

/// Slips that are mended in the word's own layout: two capitals, misspellings.
const std::vector<Mend>& slips();

/// The entry of the dictionary of replacements; characters that no layout has are among them.
const Mend& replacement();

bool isRussian(const std::string& word);

/// The keys, as the English layout names them, that give the text where each word is typed in its
/// own layout.
std::string keysOf(const std::string& text);

/// What these keys give in the Russian layout.
std::string inRussian(const std::string& keys);

}  // namespace kivra::soak
