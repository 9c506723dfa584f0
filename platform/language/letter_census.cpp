#include "platform/language/letter_census.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>

#include <cstdint>
#include <set>

namespace kivra {

namespace {

constexpr char32_t curlyApostrophe = 0x2019;

}  // namespace

LetterCensus::LetterCensus(std::string_view text) {
  const auto utf16 =
      icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
  std::u32string word;
  const auto endWord = [&] {
    if (!word.empty()) words.push_back(std::move(word));
    word.clear();
  };
  for (std::int32_t index = 0; index < utf16.length(); index = utf16.moveIndex32(index, 1)) {
    const auto scalar = utf16.char32At(index);
    if (u_isalpha(scalar) != 0) {
      const auto letter = static_cast<char32_t>(u_tolower(scalar));
      count(letter);
      letters += letter;
      word += letter;
    } else if ((scalar == '\'' || scalar == curlyApostrophe) && !word.empty()) {
      word += U'\'';
    } else {
      endWord();
    }
  }
  endWord();
}

std::size_t LetterCensus::lettersOfDifferentWords() const {
  std::size_t count = 0;
  for (const auto& word : std::set<std::u32string_view>(words.begin(), words.end())) {
    count += word.size();
  }
  return count;
}

void LetterCensus::count(char32_t letter) {
  UErrorCode status = U_ZERO_ERROR;
  switch (uscript_getScript(static_cast<UChar32>(letter), &status)) {
    case USCRIPT_LATIN:
      ++latin;
      break;
    case USCRIPT_CYRILLIC:
      ++cyrillic;
      break;
    case USCRIPT_HAN:
      ++han;
      break;
    case USCRIPT_HIRAGANA:
    case USCRIPT_KATAKANA:
      ++kana;
      break;
    default:
      ++other;
      break;
  }
}

}  // namespace kivra
