#include "platform/spelling/letter_code.h"

#include <cstddef>

namespace kivra {
namespace {

constexpr char32_t replacement = 0xFFFD;

std::size_t sequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

char32_t decodeOne(std::string_view utf8, std::size_t& pos) {
  const auto lead = static_cast<unsigned char>(utf8[pos]);
  const std::size_t length = sequenceLength(lead);
  if (length == 1) {
    ++pos;
    return lead;
  }
  if (length == 0 || pos + length > utf8.size()) {
    ++pos;
    return replacement;
  }
  char32_t scalar = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(utf8[pos + i]);
    if ((next & 0xC0U) != 0x80U) {
      pos += i;
      return replacement;
    }
    scalar = (scalar << 6U) | (next & 0x3FU);
  }
  pos += length;
  const bool overlong = (length == 3 && scalar < 0x800) || (length == 4 && scalar < 0x10000);
  const bool surrogate = scalar >= 0xD800 && scalar < 0xE000;
  return overlong || surrogate || scalar > 0x10FFFF ? replacement : scalar;
}

bool isLatinExtended(char32_t c) { return c >= 0xC0 && c <= 0x17F && c != 0xD7 && c != 0xF7; }

bool isUpperScalar(char32_t c) { return lowerScalar(c) != c; }

}  // namespace

std::u32string decodeUtf8(std::string_view utf8) {
  std::u32string out;
  out.reserve(utf8.size());
  for (std::size_t pos = 0; pos < utf8.size();) out.push_back(decodeOne(utf8, pos));
  return out;
}

void appendUtf8(std::string& out, char32_t scalar) {
  const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (scalar < 0x80) {
    put(scalar);
  } else if (scalar < 0x800) {
    put(0xC0U | (scalar >> 6U));
    put(0x80U | (scalar & 0x3FU));
  } else if (scalar < 0x10000) {
    put(0xE0U | (scalar >> 12U));
    put(0x80U | ((scalar >> 6U) & 0x3FU));
    put(0x80U | (scalar & 0x3FU));
  } else {
    put(0xF0U | (scalar >> 18U));
    put(0x80U | ((scalar >> 12U) & 0x3FU));
    put(0x80U | ((scalar >> 6U) & 0x3FU));
    put(0x80U | (scalar & 0x3FU));
  }
}

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
