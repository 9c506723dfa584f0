#include "layout/word_reading.h"

#include <algorithm>
#include <optional>

#include "support/text.h"

namespace kivra {

namespace {

bool isPartOfWord(const Keystroke& key, const Layout& layout) {
  const auto character = layout.character(key.keyCode, key.shift);
  const auto scalar = character ? text::firstScalar(*character) : std::nullopt;
  return scalar && (text::isLetter(*scalar) || text::isDecimalDigit(*scalar));
}

}  // namespace

WordReading WordReading::whole(const Word& word, const Layout& layout) {
  return {.count = word.size(), .core = KeycodeMap::text(word, layout)};
}

WordReading WordReading::withoutMarks(const Word& word, const Layout& layout) {
  const auto isPart = [&](const Keystroke& key) { return isPartOfWord(key, layout); };
  const auto begin = std::ranges::find_if(word, isPart);
  const auto end = std::find_if(word.rbegin(), word.rend(), isPart).base();
  if (begin == word.end()) return {.before = KeycodeMap::text(word, layout)};
  return {.first = static_cast<std::size_t>(begin - word.begin()),
          .count = static_cast<std::size_t>(end - begin),
          .before = KeycodeMap::text({word.begin(), begin}, layout),
          .core = KeycodeMap::text({begin, end}, layout),
          .after = KeycodeMap::text({end, word.end()}, layout)};
}

bool WordReading::isWord(const Layout& layout) const {
  if (core.empty()) return false;
  const auto apostrophe = core.find('\'');
  if (apostrophe == std::string::npos || layout.language() != "en") {
    return text::isAllLetters(core);
  }
  return apostrophe > 0 && apostrophe + 1 < core.size() &&
         text::isAllLetters(core.substr(0, apostrophe) + core.substr(apostrophe + 1));
}

}  // namespace kivra
