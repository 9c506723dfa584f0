#include "wrong_words.h"

#include <algorithm>
#include <array>
#include <map>
#include <sstream>
#include <vector>

#include "platform/xkb/xkb_layout.h"
#include "support/text.h"

namespace kivra::e2e {

namespace {

std::vector<std::string> words(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> result;
  for (std::string word; stream >> word;) result.push_back(word);
  return result;
}

std::map<std::string, std::string> russianKeys() {
  const auto russian = XkbLayout::named("ru");
  const auto english = XkbLayout::named("us");
  std::map<std::string, std::string> keys;
  for (std::uint16_t key = 0; key < 64; ++key) {
    for (const auto shift : {false, true}) {
      const auto letter = russian->character(key, shift);
      const auto latin = english->character(key, shift);
      if (letter && latin) keys.try_emplace(*letter, *latin);
    }
  }
  return keys;
}

/// The keys of the text, whatever layout they were read in.
std::string keysOf(const std::string& text) {
  static const auto keys = russianKeys();
  std::string result;
  for (const auto& character : text::characters(text)) {
    const auto found = keys.find(character);
    result += found == keys.end() ? character : found->second;
  }
  return result;
}

}  // namespace

std::string wrongWords(int count) {
  constexpr std::array russian = {"ghbdtn",   "cnhfyf", "ckjdj", "vfibyf",
                                  "gjuekznm", "Vjcrdf", "pltcm"};
  constexpr std::array english = {"hello", "world",    "keyboard", "Monday",
                                  "the",   "language", "word"};
  std::string text;
  for (int i = 0; i < count; ++i) {
    const auto pair = static_cast<std::size_t>(i / 2);
    text += i % 2 == 0 ? russian[pair % russian.size()] : english[pair % english.size()];
    text += ' ';
  }
  return text;
}

WordCount compareWords(const std::string& text, const std::string& expected) {
  const auto typed = words(text);
  const auto wanted = words(expected);
  WordCount count;
  for (std::size_t i = 0; i < std::max(typed.size(), wanted.size()); ++i) {
    const auto got = i < typed.size() ? typed[i] : "nothing";
    const auto want = i < wanted.size() ? wanted[i] : "nothing";
    if (got == want) {
      ++count.right;
      continue;
    }
    ++(keysOf(got) == keysOf(want) ? count.whole : count.wrong);
    if (!count.firstDifference.empty()) continue;
    std::ostringstream difference;
    difference << "word " << i << " is " << got << " instead of " << want;
    count.firstDifference = difference.str();
  }
  return count;
}

}  // namespace kivra::e2e
