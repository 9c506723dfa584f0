#include "slip_maker.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <random>
#include <set>
#include <vector>

#include "platform/spelling/letter_code.h"
#include "platform/spelling/sound_rewrites.h"

namespace kivra::quality {
namespace {

using Random = std::mt19937;
using Rows = std::array<std::u32string_view, 3>;

constexpr Rows latinRows = {U"qwertyuiop", U"asdfghjkl", U"zxcvbnm"};
constexpr Rows cyrillicRows = {U"йцукенгшщзхъ", U"фывапролджэ", U"ячсмитьбю"};
constexpr std::size_t shortest = 5;

std::size_t below(Random& random, std::size_t end) { return random() % end; }

// The keys that touch a letter's; the letter itself when it has no key in these rows.
std::u32string neighboursOf(char32_t letter) {
  std::u32string found;
  for (const Rows& rows : {latinRows, cyrillicRows}) {
    for (std::size_t row = 0; row < rows.size(); ++row) {
      const std::size_t at = rows[row].find(letter);
      if (at == std::u32string_view::npos) continue;
      if (at > 0) found.push_back(rows[row][at - 1]);
      if (at + 1 < rows[row].size()) found.push_back(rows[row][at + 1]);
      if (row > 0) found += rows[row - 1].substr(std::min(at, rows[row - 1].size()), 2);
    }
  }
  return found.empty() ? std::u32string(1, letter) : found;
}

std::u32string slipOfHand(std::u32string word, Random& random) {
  const std::size_t at = below(random, word.size());
  const std::u32string near = neighboursOf(word[at]);
  const char32_t neighbour = near[below(random, near.size())];
  const std::size_t kind = below(random, 100);
  if (kind < 40) {
    word[at] = neighbour;
  } else if (kind < 70) {
    word.erase(at, 1);
  } else if (kind < 80) {
    word.insert(at, 1, word[at]);
  } else if (kind < 90) {
    word.insert(at, 1, neighbour);
  } else {
    const std::size_t first = std::min(at, word.size() - 2);
    std::swap(word[first], word[first + 1]);
  }
  return word;
}

// One of the rewrites that fit the word, the cheaper the likelier.
std::optional<std::u32string> slipOfEar(const std::u32string& word, Random& random) {
  std::vector<std::u32string> results;
  std::vector<double> weights;
  for (const SoundRewrite& rewrite : soundRewrites()) {
    for (std::size_t at = word.find(rewrite.meant); at != std::u32string::npos;
         at = word.find(rewrite.meant, at + 1)) {
      const bool atEnd = at + rewrite.meant.size() == word.size();
      if (rewrite.place == SoundRewrite::Place::start && at != 0) continue;
      if (rewrite.place == SoundRewrite::Place::end && !atEnd) continue;
      std::u32string typed = word;
      results.push_back(typed.replace(at, rewrite.meant.size(), rewrite.typed));
      weights.push_back(std::exp(-rewrite.cost / 4.0));
    }
  }
  if (results.empty()) return std::nullopt;
  return results[std::discrete_distribution<std::size_t>(weights.begin(), weights.end())(random)];
}

bool isPlainWord(std::u32string_view word) {
  return word.size() >= shortest && std::ranges::all_of(word, [](char32_t c) {
           return isLetterScalar(c) && lowerScalar(c) == c;
         });
}

std::set<std::u32string> plainWords(std::string_view text) {
  std::set<std::u32string> words;
  const std::u32string scalars = decodeUtf8(text);
  constexpr std::u32string_view blanks = U" \t\r\n";
  for (std::size_t pos = scalars.find_first_not_of(blanks); pos != std::u32string::npos;) {
    const std::size_t end = std::min(scalars.find_first_of(blanks, pos), scalars.size());
    const auto word = scalars.substr(pos, end - pos);
    if (isPlainWord(word)) words.insert(word);
    pos = scalars.find_first_not_of(blanks, end);
  }
  return words;
}

}  // namespace

std::string slipsIn(std::string_view text, SlipKind kind, std::size_t count) {
  const std::set<std::u32string> words = plainWords(text);
  Random random(1);
  std::string list;
  std::size_t passed = 0;
  for (const std::u32string& word : words) {
    // The words are in order; every n-th is taken.
    passed += count;
    if (passed < words.size()) continue;
    passed -= std::min(passed, words.size());
    const auto typed = kind == SlipKind::hand ? slipOfHand(word, random) : slipOfEar(word, random);
    if (!typed || words.contains(*typed)) continue;
    for (const char32_t c : *typed) appendUtf8(list, c);
    list.push_back('\t');
    for (const char32_t c : word) appendUtf8(list, c);
    list.push_back('\n');
  }
  return list;
}

}  // namespace kivra::quality
