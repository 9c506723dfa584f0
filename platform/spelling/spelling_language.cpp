#include "platform/spelling/spelling_language.h"

#include <algorithm>
#include <hunspell.hxx>
#include <utility>

#include "platform/spelling/dictionary_files.h"
#include "platform/spelling/letter_code.h"

namespace kivra {
namespace {

// Forms of up to this many letters must be known to a frequency list: "еру" and "pf" are in the
// dictionaries, but the keys are those of "the" and "за".
constexpr std::size_t shortForm = 4;

constexpr std::u32string_view oneLetterWords = U"aiавикосуя";

// The English words of two letters; the other forms of two letters in the dictionary are
// abbreviations, whose keys give pieces of Russian words.
constexpr std::u32string_view twoLetterWords =
    U" ad ah am an as at aw ax be by do ed eh em er ex go ha he hi hm ho id if in is it la lo ma "
    U"me "
    U"mr ms my no of oh ok on or ow ox oz pa pc re sh so ta to tv uh um up us we ye yo ";

// The least level of a dictionary form of three letters: "inf" has the keys of "шта".
constexpr int leastLevelOfThree = 20;

// Abbreviations in capitals: up to this many letters, and the least levels, the second for those
// whose keys give a common word of the other language.
constexpr std::size_t longestAbbreviation = 4;
constexpr int leastLevelOfAbbreviation = 17;
constexpr int leastLevelOfShadowed = 20;

// The least level at which a counted word of up to shortForm letters is left alone though the
// dictionary lacks it: 7 in a million words.
constexpr int shortListedLevel = 26;
std::string toUtf8(std::u32string_view word) {
  std::string out;
  for (const char32_t c : word) appendUtf8(out, c);
  return out;
}

std::size_t letterCount(std::u32string_view word) {
  return static_cast<std::size_t>(std::count_if(word.begin(), word.end(), isLetterScalar));
}

bool isLatin(std::u32string_view word) { return word.front() < 0x400; }

bool isTwoLetterWord(std::u32string_view word) {
  std::u32string between = U" ";
  for (const char32_t c : word) between.push_back(lowerScalar(c));
  between.push_back(U' ');
  return twoLetterWords.find(between) != std::u32string_view::npos;
}

// English ones are left alone only against a common Russian word: "WG" is no reason to change "ЦП".
bool isAbbreviation(std::u32string_view word, const IndexedWord& known) {
  if (word.size() > longestAbbreviation || letterCaseOf(word) != LetterCase::upper) return false;
  const WordFrequency& frequency = known.frequency;
  if ((frequency.seen & seenUpper) == 0) return false;
  if ((frequency.seen & seenShadowed) != 0) return frequency.level >= leastLevelOfShadowed;
  return !isLatin(word) && frequency.level >= leastLevelOfAbbreviation;
}

// A list shows the word in the case in which it was typed, or in one that may become it: a word
// begins a sentence, or everything is in capitals.
bool caseFits(LetterCase typed, std::uint8_t seen) {
  switch (typed) {
    case LetterCase::lower:
      return (seen & seenLower) != 0;
    case LetterCase::capitalised:
      return (seen & (seenLower | seenCapitalised)) != 0;
    case LetterCase::upper:
      return (seen & (seenLower | seenCapitalised | seenUpper)) != 0;
    case LetterCase::mixed:
      return (seen & seenMixed) != 0;
  }
  return false;
}

}  // namespace

SpellingLanguage::SpellingLanguage(std::string name, std::unique_ptr<Hunspell> hunspell,
                                   std::string encoding, std::unique_ptr<SpellingIndex> index,
                                   double demandedOdds)
    : name_(std::move(name)),
      hunspell_(std::move(hunspell)),
      encoding_(std::move(encoding)),
      index_(std::move(index)),
      formation_(*index_),
      corrector_(*index_, demandedOdds) {}

SpellingLanguage::~SpellingLanguage() = default;

bool SpellingLanguage::isValid(std::u32string_view word) const {
  if (word.size() > longestWord) return false;
  return isValidWhole(word) || isValidByParts(word);
}

bool SpellingLanguage::isValidByParts(std::u32string_view word) const {
  if (word.find(U'-') == std::u32string_view::npos) return false;
  while (true) {
    const std::size_t hyphen = std::min(word.find(U'-'), word.size());
    const std::u32string_view part = word.substr(0, hyphen);
    if (part.empty() || !isValidWhole(part)) return false;
    if (hyphen == word.size()) return true;
    word.remove_prefix(hyphen + 1);
  }
}

bool SpellingLanguage::isValidWhole(std::u32string_view word) const {
  const std::size_t letters = letterCount(word);
  if (letters == 1 && word.size() == 1) {
    return oneLetterWords.find(lowerScalar(word.front())) != std::u32string_view::npos;
  }
  const auto known = lookUp(word);
  if (known && isAbbreviation(word, *known)) return true;
  if (known && (known->frequency.seen & seenShadowed) != 0) return false;
  if (dictionaryHas(word)) return !index_->hasFrequencies() || isUsed(word, known);
  if (known && listsKnow(word, *known)) return true;
  const auto code = encodeWord(word);
  return code && letters > shortForm && formation_.isVariant(*code);
}

bool SpellingLanguage::isUsed(std::u32string_view word,
                              const std::optional<IndexedWord>& known) const {
  if (letterCount(word) > shortForm) return true;
  if (!known || known->frequency.level == 0) return false;
  if (!isLatin(word)) return true;
  if (word.size() == 2) return isTwoLetterWord(word);
  return word.size() > 3 || known->frequency.level >= leastLevelOfThree;
}

std::optional<IndexedWord> SpellingLanguage::lookUp(std::u32string_view word) const {
  const auto code = encodeWord(word);
  if (!code) return std::nullopt;
  auto known = index_->find(*code);
  if (!known && code->find(yoCode) != std::string::npos) known = index_->find(foldYo(*code));
  return known;
}

bool SpellingLanguage::dictionaryHas(std::u32string_view word) const {
  const auto ask = [this](std::u32string_view text) {
    const std::string utf8 = toUtf8(text);
    if (encoding_ == "UTF-8") return hunspell_->spell(utf8);
    const auto encoded = convertEncoding(utf8, "UTF-8", encoding_);
    return encoded && hunspell_->spell(*encoded);
  };
  if (ask(word)) return true;
  const LetterCase typed = letterCaseOf(word);
  if (word.find_first_of(U"её") != std::u32string_view::npos && typed != LetterCase::mixed) {
    const auto known = lookUp(word);
    return known && known->inDictionary && known->dictionaryCase <= typed;
  }
  return false;
}

bool SpellingLanguage::listsKnow(std::u32string_view word, const IndexedWord& known) const {
  const WordFrequency& frequency = known.frequency;
  const std::size_t letters = letterCount(word);
  const LetterCase typed = letterCaseOf(word);
  const bool counted = (frequency.seen & seenCounted) != 0;
  if (letters <= shortForm) {
    // The count is that of the name: "уфе", the keys of "eat".
    if (known.inDictionary && typed < known.dictionaryCase) return false;
    return counted && frequency.level >= shortListedLevel && caseFits(typed, frequency.seen);
  }
  if (frequency.level == 0) return false;
  // A name written without its capital is left alone too, but not "иТог".
  if (typed == LetterCase::mixed && !caseFits(typed, frequency.seen)) return false;
  // The lists of words from web pages have misspellings in them.
  return counted || !correct(word);
}

std::optional<std::string> SpellingLanguage::correct(std::u32string_view word) const {
  return corrector_.correct(word);
}

}  // namespace kivra
