#include "platform/spelling/letter_code.h"

#include <unicode/utf8.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace kivra {
namespace {

bool isLatinExtended(char32_t c) { return c >= 0xC0 && c <= 0x17F && c != 0xD7 && c != 0xF7; }

bool isUpperScalar(char32_t c) { return lowerScalar(c) != c; }

}  // namespace

// The macros of ICU convert from int to uint8_t inside.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"

std::u32string decodeUtf8(std::string_view utf8) {
  std::u32string out;
  out.reserve(utf8.size());
  const auto size = static_cast<std::int32_t>(utf8.size());
  for (std::int32_t at = 0; at < size;) {
    UChar32 scalar = 0;
    U8_NEXT_OR_FFFD(utf8.data(), at, size, scalar);
    out.push_back(static_cast<char32_t>(scalar));
  }
  return out;
}

void appendUtf8(std::string& out, char32_t scalar) {
  std::array<char, U8_MAX_LENGTH> bytes{};
  std::int32_t size = 0;
  U8_APPEND_UNSAFE(bytes.data(), size, static_cast<UChar32>(scalar));
  out.append(bytes.data(), static_cast<std::size_t>(size));
}

#pragma GCC diagnostic pop

char32_t lowerScalar(char32_t c) {
  if (c >= U'A' && c <= U'Z') return c + 32;
  if (c >= U'А' && c <= U'Я') return c + 32;
  if (c >= 0x400 && c <= 0x40F) return c + 80;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
  return c;
}

char32_t upperScalar(char32_t c) {
  if (c >= U'a' && c <= U'z') return c - 32;
  if (c >= U'а' && c <= U'я') return c - 32;
  if (c >= 0x450 && c <= 0x45F) return c - 80;
  if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 32;
  return c;
}

bool isLetterScalar(char32_t c) {
  return (c >= U'a' && c <= U'z') || (c >= U'A' && c <= U'Z') || (c >= 0x400 && c <= 0x52F) ||
         isLatinExtended(c);
}

LetterCase letterCaseOf(std::u32string_view word) {
  std::size_t letters = 0;
  std::size_t uppers = 0;
  bool firstUpper = false;
  for (const char32_t c : word) {
    if (!isLetterScalar(c)) continue;
    const bool upper = isUpperScalar(c);
    if (letters == 0) firstUpper = upper;
    ++letters;
    if (upper) ++uppers;
  }
  if (uppers == 0) return LetterCase::lower;
  if (firstUpper && uppers == 1) return LetterCase::capitalised;
  return uppers == letters ? LetterCase::upper : LetterCase::mixed;
}

std::optional<std::string> encodeWord(std::u32string_view word) {
  std::string code;
  code.reserve(word.size());
  for (const char32_t scalar : word) {
    const char32_t c = lowerScalar(scalar);
    if ((c >= U'a' && c <= U'z') || c == U'\'' || c == U'-') {
      code.push_back(static_cast<char>(c));
    } else if ((c >= U'а' && c <= U'я') || c == U'ё') {
      code.push_back(cyrillicCode(c));
    } else if (c == U'’') {
      code.push_back('\'');
    } else {
      return std::nullopt;
    }
  }
  return code;
}

std::string decodeWord(std::string_view code) {
  std::string out;
  for (const char c : code) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == yoCode) {
      appendUtf8(out, U'ё');
    } else {
      appendUtf8(out, byte < 0x80 ? byte : U'а' + (byte - 0x80U));
    }
  }
  return out;
}

std::string foldYo(std::string_view code) {
  std::string out(code);
  for (char& c : out) {
    if (c == yoCode) c = yeCode;
  }
  return out;
}

}  // namespace kivra
