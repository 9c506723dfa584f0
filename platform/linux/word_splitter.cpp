#include "platform/linux/word_splitter.h"

#include "platform/linux/letter_code.h"

namespace kivra {
namespace {

bool isDigit(char32_t c) {
  return c >= U'0' && c <= U'9';
}

bool isMark(char32_t c) {
  return c >= 0x300 && c <= 0x36F;
}

bool isWordScalar(char32_t c) {
  return isLetterScalar(c) || isDigit(c) || isMark(c) || c == U'`' || c == U'~';
}

bool isJoiner(char32_t c) {
  return c == U'\'' || c == U'’' || c == U'-';
}

std::size_t utf16Length(std::u32string_view text) {
  std::size_t length = 0;
  for (const char32_t c : text) length += c > 0xFFFF ? 2 : 1;
  return length;
}

std::size_t endOfWord(std::u32string_view text, std::size_t start) {
  std::size_t end = start;
  while (end < text.size()) {
    const bool joins = isJoiner(text[end]) && end + 1 < text.size() &&
                       isWordScalar(text[end + 1]) && end > start;
    if (!isWordScalar(text[end]) && !joins) break;
    ++end;
  }
  return end;
}

bool isCheckable(std::u32string_view word) {
  bool letter = false;
  for (const char32_t c : word) {
    if (isDigit(c)) return false;
    if (isLetterScalar(c)) letter = true;
  }
  return letter;
}

}  // namespace

std::vector<FoundWord> findWords(std::u32string_view text) {
  std::vector<FoundWord> words;
  std::size_t location = 0;
  for (std::size_t pos = 0; pos < text.size();) {
    if (!isWordScalar(text[pos])) {
      location += utf16Length(text.substr(pos, 1));
      ++pos;
      continue;
    }
    const std::size_t end = endOfWord(text, pos);
    const std::u32string_view word = text.substr(pos, end - pos);
    const std::size_t length = utf16Length(word);
    if (isCheckable(word)) words.push_back({word, location, length});
    location += length;
    pos = end;
  }
  return words;
}

}  // namespace kivra
