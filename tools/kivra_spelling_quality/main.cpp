// Prints how good the decisions about words are on lists and texts of your own:
//
//   kivra-spelling-quality [-v] [-c] [-s] LIST.ru.tsv TEXT.ru.txt LIST.en.tsv TEXT.en.txt ...
//
// A .tsv file holds lines "typed<TAB>meant", any other file is correct running text; "ru" before
// the extension makes it Russian. -v prints each failure. -s adds two lists for each text, of its
// words with one slip of the hand and one of the ear. -c prints the curve: what comes of it at
// other odds than those that Kivra demands, beside hunspell's and aspell's first suggestions, for
// the half of the words that the weights were fitted on and for the half that judges them.
// tools/spelling-lists makes such files from Debian packages.

#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/spelling/hunspell_spell_checker.h"
#include "slip_maker.h"
#include "spelling_quality.h"
#include "yardsticks.h"

namespace {

using namespace kivra::quality;

struct Sample {
  std::string name;
  std::string text;
  bool isList = false;
  bool russian = false;
};

constexpr std::size_t slipsOfAText = 2000;
constexpr std::array demandedOdds = {-4.0, -3.0, -2.0, -1.0, -0.5, 0.0, 0.5, 1.0, 2.0, 3.0, 4.0};

Sample readSample(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {path.substr(path.find_last_of('/') + 1),
          std::string(std::istreambuf_iterator<char>(in), {}), path.ends_with(".tsv"),
          path.find(".ru.") != std::string::npos};
}

void addSlips(std::vector<Sample>& samples) {
  const std::size_t given = samples.size();
  for (std::size_t i = 0; i < given; ++i) {
    const Sample sample = samples[i];
    if (sample.isList) continue;
    samples.push_back({"hand:" + sample.name, slipsIn(sample.text, SlipKind::hand, slipsOfAText),
                       true, sample.russian});
    samples.push_back({"ear:" + sample.name, slipsIn(sample.text, SlipKind::ear, slipsOfAText),
                       true, sample.russian});
  }
}

void print(const char* what, const Shares& shares, bool verbose) {
  std::printf("  %-28s %7zu words  right %6.2f %%  wrong %6.3f %%\n", what, shares.words,
              shares.rightPercent(), shares.wrongPercent());
  if (!verbose) return;
  for (const std::string& note : shares.notes) std::printf("    %s\n", note.c_str());
}

void measure(const Oracle& oracle, const Sample& sample, bool verbose) {
  std::printf("%s\n", sample.name.c_str());
  if (sample.isList) {
    const Halves halves = misspellings(oracle, sample.text, sample.russian);
    print("misspellings, to fit", halves.fitting, false);
    print("misspellings, to judge", halves.judging, verbose);
    return;
  }
  print("text corrected", correctedText(oracle, sample.text, sample.russian).both(), verbose);
  print("text switched", switchedText(oracle, sample.text, sample.russian), verbose);
  print("typed in the other layout", wrongLayout(oracle, sample.text, sample.russian), verbose);
}

Halves pointOf(const Oracle& oracle, const Sample& sample) {
  return sample.isList ? misspellings(oracle, sample.text, sample.russian)
                       : correctedText(oracle, sample.text, sample.russian);
}

void printPoint(const std::string& name, const Oracle& oracle, const std::vector<Sample>& samples) {
  std::vector<Halves> points;
  points.reserve(samples.size());
  for (const Sample& sample : samples) points.push_back(pointOf(oracle, sample));
  for (const bool fitting : {true, false}) {
    std::printf("%-14s %-6s", name.c_str(), fitting ? "fit" : "judge");
    for (std::size_t i = 0; i < samples.size(); ++i) {
      const Shares& shares = fitting ? points[i].fitting : points[i].judging;
      if (samples[i].isList) {
        std::printf("  %5.1f /%5.1f", shares.rightPercent(), shares.wrongPercent());
      } else {
        std::printf("  %12.3f", shares.wrongPercent());
      }
    }
    std::printf("\n");
  }
  std::fflush(stdout);
}

void printCurve(const std::vector<Sample>& samples) {
  std::printf("right / wrong of a list, changed of a text, per cent; the columns:\n");
  for (const Sample& sample : samples) std::printf("  %s\n", sample.name.c_str());
  for (const auto odds : demandedOdds) {
    auto options = kivra::HunspellSpellChecker::systemOptions();
    options.demandedOdds = odds;
    kivra::HunspellSpellChecker checker(options);
    checker.waitUntilLoaded();
    const bool isKivra = std::abs(odds) < 0.01;
    char name[32];
    std::snprintf(name, sizeof(name), "odds %+.1f%s", odds, isKivra ? " Kivra" : "");
    printPoint(name, oracleOf(checker), samples);
  }
  printPoint("hunspell", hunspellYardstick(), samples);
  std::vector<AskedWord> asked;
  const Oracle noting = recorder(asked);
  for (const Sample& sample : samples) pointOf(noting, sample);
  if (const auto aspell = aspellYardstick(asked)) {
    printPoint("aspell", *aspell, samples);
  } else {
    std::printf("aspell is not installed for both languages\n");
  }
}

}  // namespace

int main(int argc, char** argv) {
  bool verbose = false;
  bool curve = false;
  bool slips = false;
  std::vector<Sample> samples;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "-v") {
      verbose = true;
    } else if (argument == "-c") {
      curve = true;
    } else if (argument == "-s") {
      slips = true;
    } else {
      samples.push_back(readSample(argument));
    }
  }
  if (slips) addSlips(samples);
  if (curve) {
    printCurve(samples);
    return 0;
  }
  kivra::HunspellSpellChecker checker;
  checker.waitUntilLoaded();
  for (const Sample& sample : samples) measure(oracleOf(checker), sample, verbose);
}
