#include "support/text.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace kivra::text {

namespace {

// The macros of ICU convert from int to uint8_t inside.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"

/// Reads the scalar at `index` and moves past it; U+FFFD for an invalid sequence.
char32_t next(std::string_view input, std::int32_t& index) {
  UChar32 scalar = 0;
  U8_NEXT_OR_FFFD(input.data(), index, static_cast<std::int32_t>(input.size()), scalar);
  return static_cast<char32_t>(scalar);
}

void append(std::string& output, char32_t scalar) {
  char bytes[U8_MAX_LENGTH];
  std::int32_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, static_cast<UChar32>(scalar));
  output.append(bytes, static_cast<std::size_t>(length));
}

#pragma GCC diagnostic pop

/// Scalars that are a user-perceived character of their own whatever stands next to them, as long
/// as that is simple too: ASCII without control characters, and the Cyrillic letters.
bool isSimple(char32_t scalar) {
  return (scalar >= 0x20 && scalar < 0x7F) || (scalar >= 0x400 && scalar <= 0x482) ||
         (scalar >= 0x48A && scalar <= 0x52F);
}

bool isCyrillicBasic(char32_t scalar) { return scalar >= 0x400 && scalar <= 0x45F; }

/// The length in scalars of a text of simple scalars, or nothing for any other text.
std::optional<std::size_t> simpleLength(std::string_view input) {
  std::size_t count = 0;
  for (std::int32_t index = 0; index < static_cast<std::int32_t>(input.size()); ++count) {
    if (!isSimple(next(input, index))) return std::nullopt;
  }
  return count;
}

/// Calls `visit` with each user-perceived character until it answers false.
template <class Visit>
void forEachCharacter(std::string_view input, Visit visit) {
  const auto size = static_cast<std::int32_t>(input.size());
  if (simpleLength(input)) {
    for (std::int32_t index = 0; index < size;) {
      const auto begin = index;
      next(input, index);
      const auto length = static_cast<std::size_t>(index - begin);
      if (!visit(input.substr(static_cast<std::size_t>(begin), length))) return;
    }
    return;
  }
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> breaks(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  UText* source =
      utext_openUTF8(nullptr, input.data(), static_cast<std::int64_t>(input.size()), &status);
  if (U_FAILURE(status)) throw std::runtime_error("ICU: no character iterator");
  breaks->setText(source, status);
  for (auto begin = breaks->first(), end = breaks->next(); end != icu::BreakIterator::DONE;
       begin = end, end = breaks->next()) {
    if (!visit(
            input.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)))) {
      break;
    }
  }
  utext_close(source);
}

icu::UnicodeString unicodeString(std::string_view input) {
  return icu::UnicodeString::fromUTF8({input.data(), static_cast<std::int32_t>(input.size())});
}

std::string utf8(const icu::UnicodeString& input) {
  std::string output;
  input.toUTF8String(output);
  return output;
}

bool isOnlyAsciiOrCyrillic(std::string_view input) {
  for (std::int32_t index = 0; index < static_cast<std::int32_t>(input.size());) {
    const auto scalar = next(input, index);
    if (scalar >= 0x80 && !isCyrillicBasic(scalar)) return false;
  }
  return true;
}

/// Case mapping of ASCII and basic Cyrillic, where every letter maps to one letter.
template <class MapScalar>
std::string mapSimple(std::string_view input, MapScalar mapScalar) {
  std::string output;
  output.reserve(input.size());
  for (std::int32_t index = 0; index < static_cast<std::int32_t>(input.size());) {
    append(output, mapScalar(next(input, index)));
  }
  return output;
}

char32_t simpleLower(char32_t scalar) {
  if (scalar >= U'A' && scalar <= U'Z') return scalar + 0x20;
  if (scalar >= 0x410 && scalar <= 0x42F) return scalar + 0x20;
  if (scalar >= 0x400 && scalar <= 0x40F) return scalar + 0x50;
  return scalar;
}

char32_t simpleUpper(char32_t scalar) {
  if (scalar >= U'a' && scalar <= U'z') return scalar - 0x20;
  if (scalar >= 0x430 && scalar <= 0x44F) return scalar - 0x20;
  if (scalar >= 0x450 && scalar <= 0x45F) return scalar - 0x50;
  return scalar;
}

std::uint32_t categoryMask(char32_t scalar) { return U_GET_GC_MASK(static_cast<UChar32>(scalar)); }

bool isSpaceOrTab(char32_t scalar) {
  return (categoryMask(scalar) & U_GC_ZS_MASK) != 0 || scalar == '\t';
}

/// `input` without the scalars of a set at both ends.
std::string_view without(std::string_view input, bool (*isDropped)(char32_t)) {
  std::size_t begin = input.size();
  std::size_t end = 0;
  for (std::int32_t index = 0; index < static_cast<std::int32_t>(input.size());) {
    const auto start = static_cast<std::size_t>(index);
    if (isDropped(next(input, index))) continue;
    begin = std::min(begin, start);
    end = static_cast<std::size_t>(index);
  }
  return begin < end ? input.substr(begin, end - begin) : std::string_view();
}

}  // namespace

std::string validUtf8(std::string_view input) {
  std::string output;
  output.reserve(input.size());
  for (std::int32_t index = 0; index < static_cast<std::int32_t>(input.size());) {
    append(output, next(input, index));
  }
  return output;
}

bool isValidUtf8(std::string_view input) { return validUtf8(input) == input; }

std::size_t characterCount(std::string_view input) {
  if (const auto simple = simpleLength(input)) return *simple;
  std::size_t count = 0;
  forEachCharacter(input, [&](std::string_view) {
    ++count;
    return true;
  });
  return count;
}

std::vector<std::string> characters(std::string_view input) {
  std::vector<std::string> result;
  forEachCharacter(input, [&](std::string_view character) {
    result.emplace_back(character);
    return true;
  });
  return result;
}

std::string_view prefix(std::string_view input, std::size_t count) {
  std::size_t length = 0;
  forEachCharacter(input, [&](std::string_view character) {
    if (count == 0) return false;
    --count;
    length += character.size();
    return true;
  });
  return input.substr(0, length);
}

std::string_view firstCharacter(std::string_view input) { return prefix(input, 1); }

std::u32string scalars(std::string_view input) {
  std::u32string result;
  result.reserve(input.size());
  for (std::int32_t index = 0; index < static_cast<std::int32_t>(input.size());) {
    result.push_back(next(input, index));
  }
  return result;
}

std::optional<char32_t> firstScalar(std::string_view input) {
  if (input.empty()) return std::nullopt;
  std::int32_t index = 0;
  return next(input, index);
}

std::size_t utf16Length(std::string_view input) {
  std::size_t length = 0;
  for (std::int32_t index = 0; index < static_cast<std::int32_t>(input.size());) {
    length += next(input, index) > 0xFFFF ? 2 : 1;
  }
  return length;
}

std::string lowercased(std::string_view input) {
  if (isOnlyAsciiOrCyrillic(input)) return mapSimple(input, simpleLower);
  return utf8(unicodeString(input).toLower(icu::Locale::getRoot()));
}

std::string uppercased(std::string_view input) {
  if (isOnlyAsciiOrCyrillic(input)) return mapSimple(input, simpleUpper);
  return utf8(unicodeString(input).toUpper(icu::Locale::getRoot()));
}

bool isLetter(char32_t scalar) { return (categoryMask(scalar) & (U_GC_L_MASK | U_GC_M_MASK)) != 0; }

bool isDecimalDigit(char32_t scalar) { return (categoryMask(scalar) & U_GC_ND_MASK) != 0; }

bool isAlphanumeric(char32_t scalar) {
  return (categoryMask(scalar) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK)) != 0;
}

bool isPunctuation(char32_t scalar) {
  return (categoryMask(scalar) & (U_GC_P_MASK & ~U_GC_PC_MASK)) != 0;
}

bool isWhitespaceOrNewline(char32_t scalar) {
  return isSpaceOrTab(scalar) || (scalar >= 0x0A && scalar <= 0x0D) || scalar == 0x85 ||
         scalar == 0x2028 || scalar == 0x2029;
}

bool isAllLetters(std::string_view input) {
  for (std::int32_t index = 0; index < static_cast<std::int32_t>(input.size());) {
    if (!isLetter(next(input, index))) return false;
  }
  return true;
}

bool isUppercase(std::string_view character) {
  return uppercased(character) == character && lowercased(character) != character;
}

bool isLowercase(std::string_view character) {
  return lowercased(character) == character && uppercased(character) != character;
}

std::string_view trimmed(std::string_view input) { return without(input, isWhitespaceOrNewline); }

std::string_view trimmedSpaces(std::string_view input) { return without(input, isSpaceOrTab); }

std::vector<std::string_view> splitAtSpaces(std::string_view input) {
  std::vector<std::string_view> pieces;
  while (!input.empty()) {
    const auto space = std::min(input.find(' '), input.size());
    if (space > 0) pieces.push_back(input.substr(0, space));
    input.remove_prefix(std::min(space + 1, input.size()));
  }
  return pieces;
}

}  // namespace kivra::text
