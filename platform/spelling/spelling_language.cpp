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

// The least level at which a counted word of up to shortForm letters is left alone though the
// dictionary lacks it: 7 in a million words.
constexpr int shortListedLevel = 26;
// The lists of words from web pages have misspellings in them. Such a word is not left alone when a
// word close by outweighs it by more than this.
constexpr int suspicion = -8;

std::string toUtf8(std::u32string_view word) {
  std::string out;
  for (const char32_t c : word) appendUtf8(out, c);
  return out;
}

std::size_t letterCount(std::u32string_view word) {
  return static_cast<std::size_t>(std::count_if(word.begin(), word.end(), isLetterScalar));
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
                                   std::string encoding, std::unique_ptr<SpellingIndex> index)
    : name_(std::move(name)),
      hunspell_(std::move(hunspell)),
      encoding_(std::move(encoding)),
      index_(std::move(index)),
      corrector_(*index_) {}

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
  if (known && (known->frequency.seen & seenShadowed) != 0) return false;
  if (dictionaryHas(word)) {
    return letters > shortForm || !index_->hasFrequencies() ||
           (known && known->frequency.level > 0);
  }
  return known && listsKnow(word, *known);
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
  if (counted) return true;
  const auto code = encodeWord(word);
  if (!code) return false;
  const auto near = corrector_.candidates(*code);
  if (near.empty() || near.front().score - frequency.level < suspicion) return true;
  return !Corrector::choose(word, near);
}

std::optional<std::string> SpellingLanguage::correct(std::u32string_view word) const {
  return corrector_.correct(word);
}

}  // namespace kivra
