#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <map>
#include <sstream>

#include "kivra_session.h"
#include "platform/xkb/xkb_layout.h"
#include "support/text.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

constexpr int wordCount = 1000;

/// Words of which each is due for a correction: the layout that the word before has selected is
/// the wrong one for it.
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

std::vector<std::string> words(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> result;
  for (std::string word; stream >> word;) result.push_back(word);
  return result;
}

struct Count {
  std::size_t same = 0;
  std::string firstDifference;
};

/// Word by word, so that a failure shows the place and not the whole text.
Count compare(const std::string& text, const std::string& expected) {
  const auto typed = words(text);
  const auto wanted = words(expected);
  Count count;
  for (std::size_t i = 0; i < std::max(typed.size(), wanted.size()); ++i) {
    const auto got = i < typed.size() ? typed[i] : "nothing";
    const auto want = i < wanted.size() ? wanted[i] : "nothing";
    if (got == want) {
      ++count.same;
    } else if (count.firstDifference.empty()) {
      std::ostringstream difference;
      difference << "word " << i << " is " << got << " instead of " << want;
      count.firstDifference = difference.str();
    }
  }
  return count;
}

class TypingOrder : public testing::TestWithParam<int> {};

TEST_P(TypingOrder, IsThatOfTheEmbeddedDesktop) {
  KivraSession desktop;
  const auto typed = wrongWords(wordCount);
  const auto expected = embeddedResult(typed);
  ASSERT_NE(expected, typed);
  const auto key = std::chrono::milliseconds(GetParam());
  desktop.typist.setPace(key / 2, key - key / 2);
  desktop.typist.type(typed);
  const auto text = desktop.window.textAfter(expected);
  const auto count = compare(text, expected);
  std::cout << "[ FIGURES  ] " << GetParam() << " ms between keys: " << count.same << " of "
            << wordCount << " words as on the embedded desktop\n";
  EXPECT_TRUE(text == expected) << count.firstDifference << '\n' << desktop.session.kivraLog();
}

INSTANTIATE_TEST_SUITE_P(Pace, TypingOrder, testing::Values(2, 5, 10, 30),
                         [](const auto& pace) { return std::to_string(pace.param) + "ms"; });

/// The keys of the text, whatever layout they were read in.
std::string keysOf(const std::string& text) {
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
  std::string result;
  for (const auto& character : text::characters(text)) {
    const auto found = keys.find(character);
    result += found == keys.end() ? character : found->second;
  }
  return result;
}

TEST(TypingBurst, LosesAndMisplacesNothing) {
  KivraSession desktop;
  const auto typed = wrongWords(wordCount);
  const auto expected = embeddedResult(typed);
  desktop.typist.setPace(0us, 0us);
  desktop.typist.type(typed);
  const auto text = desktop.window.textAfter(expected);
  std::cout << "[ FIGURES  ] burst: " << compare(text, expected).same << " of " << wordCount
            << " words as on the embedded desktop\n";
  // Words may stay uncorrected, but none may lose, double or swap a letter.
  EXPECT_EQ(compare(keysOf(text), keysOf(expected)).firstDifference, "")
      << desktop.session.kivraLog();
}

}  // namespace
}  // namespace kivra::e2e
