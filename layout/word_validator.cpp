#include "layout/word_validator.h"

#include <algorithm>

#include "support/text.h"

namespace kivra {

namespace {

bool isBetween(char32_t scalar, char32_t first, char32_t last) {
  return scalar >= first && scalar <= last;
}

}  // namespace

bool WordValidator::isValid(std::string_view word, std::string_view code) {
  if (text::characterCount(word) < 2) return false;
  const auto language = resolveLanguage(code);
  return language && !checker_.checkSpellingOfString(word, 0, *language, tag_);
}

std::optional<std::string> WordValidator::correction(std::string_view word, std::string_view code) {
  const auto language = resolveLanguage(code);
  if (!language) return std::nullopt;
  return checker_.correctionForWordRange({0, text::utf16Length(word)}, word, *language, tag_);
}

std::optional<std::string> WordValidator::resolveLanguage(std::string_view code) {
  const auto known = resolvedLanguages_.find(code);
  if (known != resolvedLanguages_.end()) return known->second;
  auto found = findLanguage(code);
  if (found) resolvedLanguages_.emplace(code, *found);
  return found;
}

std::optional<std::string> WordValidator::findLanguage(std::string_view code) {
  const auto available = checker_.availableLanguages();
  if (std::ranges::find(available, code) != available.end()) return std::string(code);
  const auto variant = std::ranges::find_if(available, [&](const std::string& name) {
    return name.size() > code.size() && name.starts_with(code) &&
           (name[code.size()] == '_' || name[code.size()] == '-');
  });
  return variant == available.end() ? std::nullopt : std::optional(*variant);
}

bool WordValidator::looksLikeSecret(std::string_view word) {
  if (text::characterCount(word) < 7) return false;
  bool lower = false;
  bool upper = false;
  bool digit = false;
  bool symbol = false;
  for (const auto scalar : text::scalars(word)) {
    if (isBetween(scalar, U'a', U'z') || isBetween(scalar, U'а', U'я')) {
      lower = true;
    } else if (isBetween(scalar, U'A', U'Z') || isBetween(scalar, U'А', U'Я')) {
      upper = true;
    } else if (isBetween(scalar, U'0', U'9')) {
      digit = true;
    } else if (!text::isAlphanumeric(scalar)) {
      symbol = true;
    }
  }
  return static_cast<int>(digit) + static_cast<int>(symbol) + static_cast<int>(lower && upper) >= 2;
}

}  // namespace kivra
