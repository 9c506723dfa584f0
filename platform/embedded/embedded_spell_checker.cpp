#include "platform/embedded/embedded_spell_checker.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace kivra::embedded {

namespace {

icu::UnicodeString unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::string lowercased(std::string_view text) {
  std::string lowered;
  unicode(text).toLower(icu::Locale::getRoot()).toUTF8String(lowered);
  return lowered;
}

/// Whether a checker's name for a language ("ru_RU") is one of the language with this code ("ru").
bool isVariant(std::string_view name, std::string_view code) {
  return name.starts_with(code) &&
         (name.size() == code.size() || name[code.size()] == '_' || name[code.size()] == '-');
}

}  // namespace

void EmbeddedSpellChecker::setDictionary(const std::string& language,
                                         const std::vector<std::string>& words,
                                         const Corrections& corrections) {
  auto& dictionary = dictionaries_[language];
  dictionary = {};
  for (const auto& word : words) dictionary.words.insert(lowercased(word));
  for (const auto& [word, correction] : corrections) {
    dictionary.corrections.emplace(lowercased(word), correction);
  }
}

std::vector<std::string> EmbeddedSpellChecker::availableLanguages() {
  std::vector<std::string> languages;
  for (const auto& [language, dictionary] : dictionaries_) languages.push_back(language);
  // The real one is asked, and so loaded, only for what the fixed lists leave open.
  if (dictionaries_.contains("ru") && dictionaries_.contains("en")) return languages;
  if (auto* checker = real()) {
    for (auto& language : checker->availableLanguages()) {
      if (dictionaryFor(language) == nullptr) languages.push_back(std::move(language));
    }
  }
  return languages;
}

std::optional<TextRange> EmbeddedSpellChecker::checkSpellingOfString(std::string_view string,
                                                                     std::size_t startingAt,
                                                                     std::string_view language,
                                                                     int tag) {
  if (const auto* dictionary = dictionaryFor(language)) {
    if (dictionary->words.contains(lowercased(string))) return std::nullopt;
    return TextRange{startingAt, static_cast<std::size_t>(unicode(string).length()) - startingAt};
  }
  auto* checker = real();
  if (checker == nullptr) return std::nullopt;
  return checker->checkSpellingOfString(string, startingAt, language, tag);
}

std::optional<std::string> EmbeddedSpellChecker::correctionForWordRange(TextRange range,
                                                                        std::string_view string,
                                                                        std::string_view language,
                                                                        int tag) {
  if (const auto* dictionary = dictionaryFor(language)) {
    const auto found = dictionary->corrections.find(lowercased(string));
    return found == dictionary->corrections.end() ? std::nullopt : std::optional(found->second);
  }
  auto* checker = real();
  if (checker == nullptr) return std::nullopt;
  return checker->correctionForWordRange(range, string, language, tag);
}

const EmbeddedSpellChecker::Dictionary* EmbeddedSpellChecker::dictionaryFor(
    std::string_view language) const {
  for (const auto& [code, dictionary] : dictionaries_) {
    if (isVariant(language, code)) return &dictionary;
  }
  return nullptr;
}

SpellChecker* EmbeddedSpellChecker::real() { return real_ ? real_() : nullptr; }

}  // namespace kivra::embedded
