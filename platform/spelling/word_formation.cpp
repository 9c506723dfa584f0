#include "platform/spelling/word_formation.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/spelling/letter_code.h"

namespace kivra {
namespace {

using Pieces = std::vector<std::string>;

Pieces encoded(std::u32string_view list) {
  Pieces pieces;
  while (!list.empty()) {
    const std::size_t space = std::min(list.find(U' '), list.size());
    pieces.push_back(encodeWord(list.substr(0, space)).value_or(""));
    list.remove_prefix(std::min(space + 1, list.size()));
  }
  return pieces;
}

const Pieces& prefixes() {
  static const Pieces pieces = encoded(
      U"не недо по пере под пред про раз рас за на над от при до без бес с о у вы де ре анти супер "
      U"мульти микро "
      U"мини макси псевдо само сверх полу много одно двух трех меж авто видео аудио веб гипер "
      U"ультра "
      U"интер нано био гео теле фото электро контр экс вице лже пост суб транс "
      U"un re non mis pre over under out sub super inter multi anti counter auto co micro mega "
      U"semi "
      U"self cyber hyper bio de dis en em fore mid mal");
  return pieces;
}

// A suffix is told from a slip ("trys", "makeing", "basicly") by the letters that it may not
// follow.
struct Suffix {
  std::string letters;
  std::string notBehind;
};

const std::vector<Suffix>& suffixes() {
  static const std::vector<Suffix> list = {
      {"s", "sxzyh"},
      {"ness", "y"},
      {"less", "y"},
      {"like", ""},
      {"ish", "ey"},
      {"ism", "ey"},
      {"ist", "ey"},
      {"ists", "ey"},
      {"ly", "celuy"},
      {"eth", "ey"},
      {"est", "ey"},
      {"th", ""},
      {"er", "ey"},
      {"ers", "ey"},
      {"ing", "e"},
      {"ings", "e"},
      {"able", "ecy"},
      {"ship", ""},
      {"wise", ""},
      {"ed", "ey"},
      {"eable", ""},
      {"'s", ""},
      {"ization", ""},
      {"ize", "e"},
      {"ful", "y"},
      {*encodeWord(U"ся"), ""},
      {*encodeWord(U"сь"), ""},
  };
  return list;
}

const Pieces& endings() {
  static const Pieces pieces = encoded(
      U"а я о е у ю ы и й ь ий ей ии ах ях ами ями ов ев ам ям ом ем ём ою ею ью ья ье ьи ьем ию "
      U"ие "
      U"ее ый ая ое ые ых ым ой ого ому ыми их им ими ую юю ет ёт ит ут ют ат ят ешь ишь ете ите л "
      U"ла "
      U"ло ли ть ти в вши ши вший ши ший ся сь тся ться на но ны н ен та то ты т ка ки ку кой ок "
      U"ек "
      U"s es ed d er ers ing ings ic ics al ally ous us y ies um a ae i e en eth est th on ors or");
  return pieces;
}

bool isEnding(std::string_view letters) {
  return letters.empty() || std::ranges::find(endings(), letters) != endings().end();
}

struct Variant {
  std::string word;
  std::string meant;
};

// British spellings, for a dictionary of American ones.
const std::vector<Variant>& britishSpellings() {
  static const std::vector<Variant> list = {
      {"our", "or"},      {"is", "iz"},        {"ys", "yz"},       {"lled", "led"},
      {"lling", "ling"},  {"ller", "ler"},     {"llery", "lry"},   {"ae", "e"},
      {"oe", "e"},        {"tre", "ter"},      {"bre", "ber"},     {"ence", "ense"},
      {"ogue", "og"},     {"gement", "gment"}, {"scept", "skept"}, {"mme", "m"},
      {"mould", "mold"},  {"cheque", "check"}, {"tyre", "tire"},   {"storey", "story"},
      {"plough", "plow"}, {"grey", "gray"},
  };
  return list;
}

// How common each part of a compound must be; see WordFrequency::level.
constexpr int commonPart = 22;
constexpr std::size_t shortestPart = 3;
constexpr std::size_t shortestRest = 4;

bool isVowelOrSign(char c) {
  return std::string_view("aeiouy'-").find(c) != std::string_view::npos;
}

// "stoped": the letter that should have been doubled was not.
bool wantsDoubling(std::string_view stem, std::string_view suffix) {
  if (suffix.front() != 'e' && suffix.front() != 'i') return false;
  if (stem.size() < 3 || isVowelOrSign(stem.back()) || stem.back() == 'w' || stem.back() == 'x') {
    return false;
  }
  return isVowelOrSign(stem[stem.size() - 2]) && !isVowelOrSign(stem[stem.size() - 3]);
}

}  // namespace

bool WordFormation::has(std::string_view word) const {
  const auto known = index_.find(word);
  return known && known->inDictionary && known->dictionaryCase == LetterCase::lower;
}

bool WordFormation::isDerived(std::string_view word) const {
  return hasPrefix(word) || hasSuffix(word) || isComparative(word);
}

bool WordFormation::hasPrefix(std::string_view word) const {
  return std::ranges::any_of(prefixes(), [&](const std::string& prefix) {
    if (!word.starts_with(prefix) || word.size() < prefix.size() + shortestRest) return false;
    return word[prefix.size()] != prefix.back() && has(word.substr(prefix.size()));
  });
}

bool WordFormation::hasSuffix(std::string_view word) const {
  return std::ranges::any_of(suffixes(), [&](const Suffix& suffix) {
    if (!word.ends_with(suffix.letters)) return false;
    const std::string_view stem = word.substr(0, word.size() - suffix.letters.size());
    if (stem.size() < shortestPart || suffix.notBehind.find(stem.back()) != std::string::npos) {
      return false;
    }
    return !wantsDoubling(stem, suffix.letters) && has(stem);
  });
}

bool WordFormation::isComparative(std::string_view word) const {
  static const Pieces comparative = encoded(U"ее ей");
  static const Pieces positive = encoded(U"ый ой ий");
  if (word.size() < shortestRest + 2) return false;
  const std::string stem(word.substr(0, word.size() - 2));
  if (!std::ranges::any_of(comparative, [&](const auto& end) { return word.ends_with(end); })) {
    return false;
  }
  return std::ranges::any_of(positive, [&](const std::string& end) { return has(stem + end); });
}

bool WordFormation::isCompound(std::string_view word) const {
  const auto isPart = [this](std::string_view part) {
    const auto known = index_.find(part);
    return known && known->inDictionary && known->dictionaryCase == LetterCase::lower &&
           known->frequency.level >= commonPart;
  };
  for (std::size_t at = shortestPart; at + shortestPart <= word.size(); ++at) {
    if (isPart(word.substr(0, at)) && isPart(word.substr(at))) return true;
  }
  return false;
}

bool WordFormation::isStemOfNegation(std::string_view word) const {
  return word.ends_with('n') && has(std::string(word) + "'t");
}

bool WordFormation::isListedOnly(std::string_view word) const {
  const auto known = index_.find(word);
  return known && !known->inDictionary && known->frequency.level > 0;
}

std::size_t WordFormation::listedForms(std::string_view word) const {
  std::size_t most = 0;
  for (std::size_t stem = shortestRest; stem <= word.size(); ++stem) {
    if (!isEnding(word.substr(stem))) continue;
    std::string form(word.substr(0, stem));
    std::size_t forms = stem < word.size() && isListedOnly(form) ? 1 : 0;
    for (const std::string& ending : endings()) {
      form.replace(stem, std::string::npos, ending);
      if (form != word && isListedOnly(form)) ++forms;
    }
    most = std::max(most, forms);
  }
  return most;
}

bool WordFormation::isOtherForm(std::string_view word, std::string_view meant) {
  const auto differ = std::ranges::mismatch(word, meant);
  const auto common = static_cast<std::size_t>(differ.in1 - word.begin());
  if (common < shortestPart) return false;
  // The endings may begin before the first letter that differs: "-ий", "-ии".
  for (std::size_t back = 0; back < 3 && common - back >= shortestPart; ++back) {
    if (isEnding(word.substr(common - back)) && isEnding(meant.substr(common - back))) return true;
  }
  return false;
}

bool WordFormation::isVariant(std::string_view word) const {
  return isOldSpelling(word) || std::ranges::any_of(britishSpellings(), [&](const auto& british) {
           const std::size_t at = word.find(british.word);
           if (at == std::string_view::npos) return false;
           std::string other(word);
           return has(other.replace(at, british.word.size(), british.meant));
         });
}

// "просвещенья" for "просвещения", "жизнию" for "жизнью".
bool WordFormation::isOldSpelling(std::string_view word) const {
  constexpr char soft = cyrillicCode(U'ь');
  constexpr char full = cyrillicCode(U'и');
  static const Pieces behind = encoded(U"е ем и ю я ям ями ях");
  for (std::size_t at = word.size() < 6 ? word.size() : word.size() - 4; at < word.size(); ++at) {
    if (word[at] != soft && word[at] != full) continue;
    if (std::ranges::find(behind, word.substr(at + 1)) == behind.end()) continue;
    std::string other(word);
    other[at] = word[at] == soft ? full : soft;
    if (has(other)) return true;
  }
  return false;
}

}  // namespace kivra
