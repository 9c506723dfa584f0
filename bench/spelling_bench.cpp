// The cost of judging and of correcting a word, beside the raw cost of hunspell's own spell() and
// suggest() on the same words in the same run. Prints percentiles, since a key waits for the
// slowest word, not for the average.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <hunspell.hxx>
#include <iterator>
#include <string>
#include <vector>

#include "platform/spelling/hunspell_spell_checker.h"
#include "platform/spelling/letter_code.h"

namespace {

using Words = std::vector<std::string>;

struct Language {
  std::string name;
  Words right;
  Words wrong;
};

std::string utf8(std::u32string_view text) {
  std::string out;
  for (const char32_t c : text) kivra::appendUtf8(out, c);
  return out;
}

// Real misspellings of the sample, and every dictionary word of up to 24 letters in a sparse row
// with one and two letters replaced.
Language words(const std::string& name, const std::string& sample, char32_t replacement) {
  Language language{name, {}, {}};
  std::ifstream pairs(sample);
  for (std::string typed, meant; std::getline(pairs, typed, '\t') && std::getline(pairs, meant);) {
    language.wrong.push_back(typed);
    language.right.push_back(meant);
  }
  std::ifstream dictionary("/usr/share/hunspell/" + name + ".dic");
  std::string line;
  for (int i = 0; std::getline(dictionary, line); ++i) {
    if (i % 97 != 0) continue;
    std::u32string word = kivra::decodeUtf8(line.substr(0, line.find('/')));
    if (word.size() < 4 || word.size() > 24) continue;
    word[word.size() / 2] = replacement;
    language.wrong.push_back(utf8(word));
    word[word.size() - 2] = replacement;
    language.wrong.push_back(utf8(word));
  }
  return language;
}

template <typename Call>
double report(const char* what, const Words& list, double bound, Call&& call) {
  std::vector<double> micros;
  for (const std::string& word : list) {
    double best = 1e12;
    for (int round = 0; round < 3; ++round) {
      const auto start = std::chrono::steady_clock::now();
      call(word);
      const std::chrono::duration<double, std::micro> took =
          std::chrono::steady_clock::now() - start;
      best = std::min(best, took.count());
      if (took.count() > 1e4) break;
    }
    micros.push_back(best);
  }
  std::sort(micros.begin(), micros.end());
  const double middle = micros[micros.size() / 2];
  const double high = micros[micros.size() * 99 / 100];
  std::printf("  %-28s p50 %9.1f us  p99 %9.1f us  max %9.1f us", what, middle, high,
              micros.back());
  if (bound > 0)
    std::printf("  bound %.0f us at p99: %s", bound, high <= bound ? "kept" : "MISSED");
  std::printf("\n");
  return high;
}

bool measure(kivra::HunspellSpellChecker& checker, const Language& language) {
  const std::string base = "/usr/share/hunspell/" + language.name;
  const Hunspell constHunspell((base + ".aff").c_str(), (base + ".dic").c_str());
  auto& hunspell = const_cast<Hunspell&>(constHunspell);
  Words few;
  for (std::size_t i = 0; i < language.wrong.size(); i += language.wrong.size() / 60 + 1) {
    few.push_back(language.wrong[i]);
  }
  std::printf("%s, %zu words\n", language.name.c_str(), language.wrong.size());
  const auto valid = [&](const std::string& word) {
    checker.checkSpellingOfString(word, 0, language.name, 1);
  };
  bool kept = report("validity of right words", language.right, 60, valid) <= 60;
  report("hunspell spell()", language.right, 0, [&](const std::string& w) { hunspell.spell(w); });
  report("validity of wrong words", language.wrong, 0, valid);
  report("hunspell spell()", language.wrong, 0, [&](const std::string& w) { hunspell.spell(w); });
  kept &=
      report("correction", language.wrong, 1000, [&](const std::string& word) {
        checker.correctionForWordRange({0, kivra::decodeUtf8(word).size()}, word, language.name, 1);
      }) <= 1000;
  report("hunspell suggest(), 60 words", few, 0,
         [&](const std::string& w) { hunspell.suggest(w); });
  return kept;
}

}  // namespace

int main() {
  kivra::HunspellSpellChecker checker;
  const auto start = std::chrono::steady_clock::now();
  checker.waitUntilLoaded();
  const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
  std::printf("dictionaries loaded in %.0f ms (in the background)\n", took.count());
  const std::string samples = KIVRA_SPELLING_SAMPLES;
  bool kept = measure(checker, words("ru_RU", samples + "/misspellings.ru.tsv", U'ы'));
  kept &= measure(checker, words("en_US", samples + "/misspellings.en.tsv", U'k'));
  return kept ? 0 : 1;
}
