#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Text as users perceive it, on UTF-8. Input that is not valid UTF-8 reads as if each bad sequence
/// were U+FFFD. Nothing here depends on the locale.
namespace kivra::text {

/// `input` with every invalid sequence replaced by U+FFFD.
std::string validUtf8(std::string_view input);
bool isValidUtf8(std::string_view input);

/// User-perceived characters: extended grapheme clusters (UAX #29).
std::size_t characterCount(std::string_view input);
std::vector<std::string> characters(std::string_view input);

/// At most `count` user-perceived characters from the start.
std::string_view prefix(std::string_view input, std::size_t count);

/// The first user-perceived character; empty for an empty text.
std::string_view firstCharacter(std::string_view input);

/// Unicode scalars.
std::u32string scalars(std::string_view input);
std::optional<char32_t> firstScalar(std::string_view input);

/// Length in UTF-16 code units.
std::size_t utf16Length(std::string_view input);

/// Full case mapping.
std::string lowercased(std::string_view input);
std::string uppercased(std::string_view input);

/// The letters set: general categories L* and M*.
bool isLetter(char32_t scalar);
/// The decimal-digits set: general category Nd.
bool isDecimalDigit(char32_t scalar);
/// The alphanumerics set: general categories L*, M* and N*.
bool isAlphanumeric(char32_t scalar);
/// Marks of punctuation: general categories P* but for the underscore's (Pc), which joins names.
bool isPunctuation(char32_t scalar);
/// White space (Unicode space separators and tab) and line breaks (U+000A to U+000D, U+0085,
/// U+2028, U+2029).
bool isWhitespaceOrNewline(char32_t scalar);

/// True when the text has no scalar outside the letters set; an empty text is all letters.
bool isAllLetters(std::string_view input);

/// True when the character, as it stands, is an upper-case (lower-case) letter of a cased script.
bool isUppercase(std::string_view character);
bool isLowercase(std::string_view character);

/// `input` without white space and line breaks at both ends.
std::string_view trimmed(std::string_view input);

/// `input` without space separators and tabs at both ends; line breaks stay.
std::string_view trimmedSpaces(std::string_view input);

/// The pieces between single spaces (U+0020), empty pieces dropped.
std::vector<std::string_view> splitAtSpaces(std::string_view input);

}  // namespace kivra::text
