#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kivra {

/// How a word is written: the automaton holds lower case only and remembers this beside it.
enum class LetterCase : unsigned char { lower, capitalised, upper, mixed };

/// Scalars of a UTF-8 string; what is not valid UTF-8 becomes U+FFFD.
std::u32string decodeUtf8(std::string_view utf8);

/// Appends one scalar to `out` as UTF-8.
void appendUtf8(std::string& out, char32_t scalar);

/// Lower case of one Latin or Cyrillic letter of the two languages; other scalars unchanged.
char32_t lowerScalar(char32_t scalar);

/// Upper case of one Latin or Cyrillic letter of the two languages; other scalars unchanged.
char32_t upperScalar(char32_t scalar);

/// True for Latin letters (ASCII, Latin-1, Latin Extended-A) and Cyrillic ones.
bool isLetterScalar(char32_t scalar);

/// The case in which a word is written; signs that are no letters do not matter. A one-letter
/// capital counts as capitalised.
LetterCase letterCaseOf(std::u32string_view word);

/// A word as one byte a letter in lower case: ASCII letters, apostrophe and hyphen as they are,
/// Cyrillic а..я from 0x80, ё 0xA0; the typographic apostrophe becomes the plain one. Nothing when
/// a letter has no code, so that such a word is left to hunspell alone.
std::optional<std::string> encodeWord(std::u32string_view word);

/// The UTF-8 text of an encoded word.
std::string decodeWord(std::string_view code);

/// Every ё of an encoded word replaced by е.
std::string foldYo(std::string_view code);

inline constexpr char yoCode = static_cast<char>(0xA0);
inline constexpr char yeCode = static_cast<char>(0x85);

/// The code of one lower-case Cyrillic letter (а..я, ё), for tables written in source.
constexpr char cyrillicCode(char32_t letter) {
  return letter == U'ё' ? yoCode : static_cast<char>(0x80 + (letter - U'а'));
}

}  // namespace kivra
