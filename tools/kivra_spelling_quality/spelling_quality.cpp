#include "spelling_quality.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>

#include "platform/spelling/letter_code.h"

namespace kivra::quality {
namespace {

// The two layouts key by key, plain and shifted.
constexpr std::u32string_view keysEnglish =
    U"`1234567890-=qwertyuiop[]\\asdfghjkl;'zxcvbnm,./"
    U"~!@#$%^&*()_+QWERTYUIOP{}|ASDFGHJKL:\"ZXCVBNM<>?";
constexpr std::u32string_view keysRussian =
    U"ё1234567890-=йцукенгшщзхъ\\фывапролджэячсмитьбю."
    U"Ё!\"№;%:?*()_+ЙЦУКЕНГШЩЗХЪ/ФЫВАПРОЛДЖЭЯЧСМИТЬБЮ,";
static_assert(keysEnglish.size() == keysRussian.size());

constexpr std::u32string_view oneKeyRussian = U"авикосуя";
constexpr std::u32string_view oneKeyEnglish = U"ai";

std::u32string_view keys(bool russian) { return russian ? keysRussian : keysEnglish; }

bool isDigit(char32_t c) { return c >= U'0' && c <= U'9'; }

bool isWordKey(std::size_t key) {
  return isLetterScalar(keysEnglish[key]) || isLetterScalar(keysRussian[key]) ||
         isDigit(keysEnglish[key]);
}

std::string toUtf8(std::u32string_view text) {
  std::string out;
  for (const char32_t c : text) appendUtf8(out, c);
  return out;
}

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string out;
  for (const std::string_view part : parts) out += part;
  return out;
}

std::u32string lowered(std::u32string_view text) {
  std::u32string out(text);
  for (char32_t& c : out) c = lowerScalar(c);
  return out;
}

bool allLetters(std::u32string_view text) {
  return std::all_of(text.begin(), text.end(), isLetterScalar);
}

bool looksLikeSecret(std::u32string_view word) {
  if (word.size() < 7) return false;
  bool lower = false;
  bool upper = false;
  bool digit = false;
  bool symbol = false;
  for (const char32_t c : word) {
    if ((c >= U'a' && c <= U'z') || (c >= U'а' && c <= U'я')) {
      lower = true;
    } else if ((c >= U'A' && c <= U'Z') || (c >= U'А' && c <= U'Я')) {
      upper = true;
    } else if (isDigit(c)) {
      digit = true;
    } else if (!isLetterScalar(c)) {
      symbol = true;
    }
  }
  return int{digit} + int{symbol} + int{lower && upper} >= 2;
}

std::size_t editDistance(std::u32string_view a, std::u32string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t corner = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t above = row[j];
      row[j] = std::min({above + 1, row[j - 1] + 1, corner + (a[i - 1] == b[j - 1] ? 0U : 1U)});
      corner = above;
    }
  }
  return row[b.size()];
}

Outcome correctTypo(const Oracle& oracle, std::u32string_view typed, bool russian) {
  Outcome none{Change::none, toUtf8(typed)};
  if (!allLetters(typed) || typed.size() < 4) return none;
  const std::string word = toUtf8(typed);
  if (oracle.isValid(word, russian)) return none;
  const auto guess = oracle.correction(word, russian);
  if (!guess || guess->empty()) return none;
  std::u32string fixed = decodeUtf8(*guess);
  if (lowerScalar(typed.front()) != typed.front()) fixed.front() = upperScalar(fixed.front());
  const std::size_t distance = editDistance(lowered(typed), lowered(fixed));
  if (fixed == typed || distance > (typed.size() < 7 ? 1U : 2U)) return none;
  return {Change::corrected, toUtf8(fixed)};
}

// The part of a blank-separated token that is still the current word when the blank comes: a key
// that belongs to no word drops what came before it.
std::u32string_view lastWord(std::u32string_view token, bool russian) {
  std::size_t start = 0;
  for (std::size_t i = 0; i < token.size(); ++i) {
    const std::size_t key = keys(russian).find(token[i]);
    if (key == std::u32string_view::npos || !isWordKey(key)) start = i + 1;
  }
  return token.substr(start);
}

template <typename Word>
void forEachWord(std::string_view text, bool russian, Word&& word) {
  const std::u32string scalars = decodeUtf8(text);
  constexpr std::u32string_view blanks = U" \t\r\n";
  for (std::size_t pos = scalars.find_first_not_of(blanks); pos != std::u32string::npos;) {
    const std::size_t end = std::min(scalars.find_first_of(blanks, pos), scalars.size());
    const auto typed = lastWord(std::u32string_view(scalars).substr(pos, end - pos), russian);
    if (!typed.empty()) word(typed);
    pos = scalars.find_first_not_of(blanks, end);
  }
}

Halves changedText(const Oracle& oracle, std::string_view text, bool russian, Change change) {
  Halves halves;
  forEachWord(text, russian, [&](std::u32string_view word) {
    Shares& shares = isForFitting(word) ? halves.fitting : halves.judging;
    ++shares.words;
    const auto outcome = decide(oracle, word, russian, russian);
    if (!outcome || outcome->change != change) return;
    ++shares.wrong;
    shares.notes.push_back(toUtf8(word) + " > " + outcome->text);
  });
  return halves;
}

}  // namespace

Oracle oracleOf(SpellChecker& checker) {
  const auto nameOf = [&checker](bool russian) -> std::string {
    for (const std::string& name : checker.availableLanguages()) {
      if (name.starts_with(russian ? "ru" : "en")) return name;
    }
    return {};
  };
  const std::array<std::string, 2> names = {nameOf(false), nameOf(true)};
  return {[&checker, names](const std::string& word, bool russian) {
            const std::string& name = names[russian ? 1 : 0];
            return !name.empty() && !checker.checkSpellingOfString(word, 0, name, 0);
          },
          [&checker, names](const std::string& word, bool russian) {
            return checker.correctionForWordRange({0, decodeUtf8(word).size()}, word,
                                                  names[russian ? 1 : 0], 0);
          }};
}

std::optional<Outcome> decide(const Oracle& oracle, std::u32string_view meant, bool meantRussian,
                              bool typedRussian) {
  std::u32string typed;
  std::u32string converted;
  for (const char32_t c : meant) {
    const std::size_t key = keys(meantRussian).find(c);
    if (key == std::u32string_view::npos) return std::nullopt;
    typed.push_back(keys(typedRussian)[key]);
    converted.push_back(keys(!typedRussian)[key]);
  }
  if (typed.empty() || looksLikeSecret(typed)) return std::nullopt;
  const Outcome switched{Change::switched, toUtf8(converted)};
  if (typed.size() == 1) {
    const auto& own = typedRussian ? oneKeyRussian : oneKeyEnglish;
    const auto& other = typedRussian ? oneKeyEnglish : oneKeyRussian;
    const bool switches = allLetters(typed) && allLetters(converted) &&
                          own.find(lowerScalar(typed[0])) == std::u32string_view::npos &&
                          other.find(lowerScalar(converted[0])) != std::u32string_view::npos;
    return switches ? switched : Outcome{Change::none, toUtf8(typed)};
  }
  if (allLetters(converted) && !oracle.isValid(toUtf8(typed), typedRussian) &&
      oracle.isValid(toUtf8(converted), !typedRussian)) {
    return switched;
  }
  return correctTypo(oracle, typed, typedRussian);
}

Shares& Shares::operator+=(const Shares& other) {
  words += other.words;
  right += other.right;
  wrong += other.wrong;
  notes.insert(notes.end(), other.notes.begin(), other.notes.end());
  return *this;
}

Shares Halves::both() const {
  Shares sum = fitting;
  sum += judging;
  return sum;
}

bool isForFitting(std::u32string_view word) {
  std::uint32_t hash = 2166136261U;
  for (const char byte : toUtf8(lowered(word))) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
  }
  return ((hash >> 7U) & 1U) == 0;
}

Halves misspellings(const Oracle& oracle, std::string_view list, bool russian) {
  Halves halves;
  const std::u32string text = decodeUtf8(list);
  for (std::size_t pos = 0; pos < text.size();) {
    const std::size_t end = std::min(text.find(U'\n', pos), text.size());
    const auto line = std::u32string_view(text).substr(pos, end - pos);
    pos = end + 1;
    const std::size_t tab = line.find(U'\t');
    if (tab == std::u32string_view::npos) continue;
    Shares& shares = isForFitting(line.substr(tab + 1)) ? halves.fitting : halves.judging;
    ++shares.words;
    const std::string meant = toUtf8(line.substr(tab + 1));
    const auto outcome = decide(oracle, line.substr(0, tab), russian, russian);
    const std::string typed = toUtf8(line.substr(0, tab));
    if (outcome && outcome->text == meant) {
      ++shares.right;
    } else if (outcome && outcome->change != Change::none) {
      ++shares.wrong;
      shares.notes.push_back(joined({"X ", typed, " > ", outcome->text, ", not ", meant}));
    } else {
      const bool valid = oracle.isValid(typed, russian);
      shares.notes.push_back(joined({valid ? "V " : "- ", typed, " stays, not ", meant}));
    }
  }
  return halves;
}

Halves correctedText(const Oracle& oracle, std::string_view text, bool russian) {
  return changedText(oracle, text, russian, Change::corrected);
}

Shares switchedText(const Oracle& oracle, std::string_view text, bool russian) {
  return changedText(oracle, text, russian, Change::switched).both();
}

Shares wrongLayout(const Oracle& oracle, std::string_view text, bool russian) {
  Shares shares;
  forEachWord(text, russian, [&](std::u32string_view word) {
    if (!allLetters(word)) return;
    const auto outcome = decide(oracle, word, russian, !russian);
    if (!outcome) return;
    ++shares.words;
    if (outcome->change == Change::switched) {
      ++shares.right;
    } else {
      ++shares.wrong;
      shares.notes.push_back(toUtf8(word));
    }
  });
  return shares;
}

}  // namespace kivra::quality
