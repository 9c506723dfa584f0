#include "platform/spelling/word_splitter.h"

#include "platform/spelling/letter_code.h"

namespace kivra {
namespace {

bool isBlank(char32_t c) {
  return c == U' ' || c == U'\t' || c == U'\n' || c == U'\r' || c == 0xA0;
}

bool isDigit(char32_t c) { return c >= U'0' && c <= U'9'; }

bool isMark(char32_t c) { return c >= 0x300 && c <= 0x36F; }

bool isWordScalar(char32_t c) {
  return isLetterScalar(c) || isDigit(c) || isMark(c) || c == U'`' || c == U'~';
}

bool isJoiner(char32_t c) { return c == U'\'' || c == U'’' || c == U'-'; }

// Signs that stand behind a word and before a blank. With a letter close behind they are no
// punctuation but letters of the other layout: ",sk" is "был", "jib,jr" is "ошибок".
bool isGlue(char32_t c) {
  return c == U',' || c == U';' || c == U'<' || c == U'[' || c == U']' || c == U'{' || c == U'}';
}

bool mayLead(char32_t c) { return c == U',' || c == U';' || c == U'.'; }

bool letterFollows(std::u32string_view text, std::size_t pos) {
  return pos + 1 < text.size() && isLetterScalar(text[pos + 1]);
}

std::size_t utf16Length(std::u32string_view text) {
  std::size_t length = 0;
  for (const char32_t c : text) length += c > 0xFFFF ? 2 : 1;
  return length;
}

std::size_t endOfWord(std::u32string_view text, std::size_t start) {
  std::size_t end = isWordScalar(text[start]) ? start : start + 1;
  while (end < text.size()) {
    const bool joins =
        end > start &&
        ((isJoiner(text[end]) && end + 1 < text.size() && isWordScalar(text[end + 1])) ||
         (isGlue(text[end]) && letterFollows(text, end)));
    if (!isWordScalar(text[end]) && !joins) break;
    ++end;
  }
  return end;
}

// An initial ("T."), a letter of "i.e.", or one like "n.", "v." and "p.".
bool isAbbreviation(std::u32string_view text, std::size_t pos, std::size_t end) {
  const auto dotAt = [text](std::size_t at) { return at < text.size() && text[at] == U'.'; };
  if (end != pos + 1 || !dotAt(end)) return false;
  const bool capital = lowerScalar(text[pos]) != text[pos];
  const bool before = pos >= 2 && dotAt(pos - 1) && isLetterScalar(text[pos - 2]);
  const bool after = letterFollows(text, end) && dotAt(end + 2);
  return capital || before || after || end + 1 == text.size();
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
    const bool leads =
        mayLead(text[pos]) && letterFollows(text, pos) && (pos == 0 || isBlank(text[pos - 1]));
    if (!isWordScalar(text[pos]) && !leads) {
      location += utf16Length(text.substr(pos, 1));
      ++pos;
      continue;
    }
    const std::size_t end = endOfWord(text, pos);
    const std::u32string_view word = text.substr(pos, end - pos);
    const std::size_t length = utf16Length(word);
    if (isCheckable(word) && !isAbbreviation(text, pos, end))
      words.push_back({word, location, length});
    location += length;
    pos = end;
  }
  return words;
}

}  // namespace kivra
