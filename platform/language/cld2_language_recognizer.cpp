#include "platform/language/cld2_language_recognizer.h"

// CLD2's header uses FILE without declaring it.
#include <cstdio>
//
#include <cld2/public/compact_lang_det.h>

#include <algorithm>
#include <string>

#include "platform/language/latin_language_hints.h"
#include "platform/language/letter_census.h"

namespace kivra {

namespace {

/// From so many letters on CLD2 is right by itself. It discounts repetitions, so they do not count.
constexpr std::size_t longText = 150;

bool isLong(const LetterCensus& census) { return census.lettersOfDifferentWords() >= longText; }

/// How many common words CLD2's answer for a short text outweighs.
constexpr double reliable = 1.6;
constexpr double guessed = 0.8;
constexpr double unlikely = 0.4;  // not one of the languages that one translates from here

/// A character of Chinese or Japanese says as much as several letters.
constexpr std::size_t lettersPerHan = 3;

struct Detected {
  std::optional<std::string> language;
  bool isReliable = false;
};

/// CLD2 has a few codes of its own.
std::string standardCode(const std::string& code) {
  if (code == "zh") return "zh-Hans";
  if (code == "iw") return "he";
  if (code == "no") return "nb";
  return code;
}

Detected detect(std::string_view text) {
  CLD2::Language languages[3];
  int percents[3];
  double scores[3];
  int textBytes = 0;
  int validBytes = 0;
  bool isReliable = false;
  const auto language = CLD2::ExtDetectLanguageSummaryCheckUTF8(
      text.data(), static_cast<int>(text.size()), /*is_plain_text=*/true, nullptr,
      CLD2::kCLDFlagBestEffort, languages, percents, scores, nullptr, &textBytes, &isReliable,
      &validBytes);
  if (language == CLD2::UNKNOWN_LANGUAGE) return {};
  return {standardCode(CLD2::LanguageCode(language)), isReliable};
}

/// Letters that Ukrainian (Russian) has and the other has not.
constexpr std::u32string_view ukrainianLetters = U"іїєґ";
constexpr std::u32string_view russianLetters = U"ыэёъ";

/// Letters of other Cyrillic alphabets.
constexpr std::u32string_view foreignLetters = U"ўјљњђћџќѓәғқңөұүһҷӣӯ";

std::string cyrillicLanguage(const LetterCensus& census, const Detected& detected) {
  const auto ukrainian = census.hasAnyOf(ukrainianLetters);
  const auto russian = census.hasAnyOf(russianLetters);
  const auto isSure = detected.isReliable && isLong(census);
  if (detected.language && (isSure || census.hasAnyOf(foreignLetters))) return *detected.language;
  if (ukrainian != russian) return ukrainian ? "uk" : "ru";
  return detected.language == "uk" ? "uk" : "ru";
}

std::optional<std::string> latinLanguage(const LetterCensus& census, const Detected& detected) {
  if (detected.isReliable && isLong(census)) return detected.language;
  auto hints = latinLanguageHints(census);
  if (detected.language) {
    const auto isOffered = hints.contains(*detected.language);
    hints[*detected.language] += !isOffered ? unlikely : detected.isReliable ? reliable : guessed;
  }
  const auto best =
      std::ranges::max_element(hints, {}, [](const auto& hint) { return hint.second; });
  if (best->second <= 0) return std::nullopt;
  return best->first;
}

}  // namespace

std::optional<std::string> Cld2LanguageRecognizer::dominantLanguage(std::string_view text) {
  const LetterCensus census(text);
  if (census.total() == 0) return std::nullopt;
  const auto detected = detect(text);
  const auto eastAsian = (census.han + census.kana) * lettersPerHan;
  const auto most = std::max({census.latin, census.cyrillic, census.other, eastAsian});
  if (most == eastAsian) {
    if (census.kana > 0) return "ja";
    return detected.language == "zh-Hant" ? "zh-Hant" : "zh-Hans";
  }
  if (most == census.cyrillic) return cyrillicLanguage(census, detected);
  if (most == census.latin) return latinLanguage(census, detected);
  return detected.language;
}

}  // namespace kivra
