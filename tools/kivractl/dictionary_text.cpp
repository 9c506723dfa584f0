#include "dictionary_text.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "match_list.h"
#include "separated_values.h"
#include "support/text.h"

namespace kivra::control {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t shortestPattern = 2;

/// Why no dictionary can have the pair; empty when it can.
std::string objection(const DictionaryText::Pair& pair) {
  if (text::characterCount(text::trimmed(pair.pattern)) < shortestPattern) {
    return "a pattern needs at least two characters";
  }
  return text::trimmed(pair.replacement).empty() ? "the replacement is empty" : "";
}

/// Takes what cannot stand in a dictionary out of the pairs and names it.
void checkPairs(DictionaryText& dictionary) {
  std::map<std::string, std::size_t> lines;
  for (const auto& pair : std::exchange(dictionary.pairs, {})) {
    auto wrong = objection(pair);
    if (wrong.empty()) {
      const auto [first, isNew] =
          lines.emplace(ReplacementStore::normalize(text::trimmed(pair.pattern)), pair.line);
      if (!isNew) wrong = "the pattern stands in line " + std::to_string(first->second) + " too";
    }
    if (wrong.empty()) {
      dictionary.pairs.push_back(pair);
    } else {
      dictionary.bad.push_back({pair.line, wrong});
    }
  }
  std::ranges::sort(dictionary.bad, {}, &LineNote::line);
}

}  // namespace

std::optional<DictionaryFormat> dictionaryFormat(std::string_view fileName) {
  using enum DictionaryFormat;
  constexpr std::array endings = {std::pair(".tsv", tsv), std::pair(".txt", tsv),
                                  std::pair(".csv", csv), std::pair(".yml", yaml),
                                  std::pair(".yaml", yaml)};
  const auto lowered = text::lowercased(fileName);
  for (const auto& [ending, format] : endings) {
    if (lowered.ends_with(ending)) return format;
  }
  return std::nullopt;
}

DictionaryText readDictionary(std::string_view text, DictionaryFormat format) {
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  DictionaryText dictionary;
  switch (format) {
    case DictionaryFormat::tsv:
      dictionary = readTabs(text);
      break;
    case DictionaryFormat::csv:
      dictionary = readCommas(text);
      break;
    case DictionaryFormat::yaml:
      dictionary = readMatches(text);
      break;
  }
  checkPairs(dictionary);
  return dictionary;
}

std::string writtenDictionary(const std::vector<ReplacementStore::Entry>& entries,
                              DictionaryFormat format) {
  std::string text = format == DictionaryFormat::yaml ? "matches:\n" : "";
  for (const auto& entry : entries) {
    switch (format) {
      case DictionaryFormat::tsv:
        text += tabLine(entry.pattern, entry.replacement);
        break;
      case DictionaryFormat::csv:
        text += commaLine(entry.pattern, entry.replacement);
        break;
      case DictionaryFormat::yaml:
        text += matchLines(entry.pattern, entry.replacement);
        break;
    }
  }
  return text;
}

}  // namespace kivra::control
