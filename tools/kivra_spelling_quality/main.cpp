// Prints how good the decisions about words are on lists and texts of your own:
//
//   kivra-spelling-quality [-v] [-y] LIST.ru.tsv TEXT.ru.txt LIST.en.tsv TEXT.en.txt ...
//
// A .tsv file holds lines "typed<TAB>meant", any other file is correct running text; "ru" before
// the extension makes it Russian. -v prints each failure, -y puts hunspell's own first suggestion
// beside ours.

#include <cstdio>
#include <fstream>
#include <hunspell.hxx>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "platform/spelling/hunspell_spell_checker.h"
#include "spelling_quality.h"

namespace {

using kivra::quality::Oracle;
using kivra::quality::Shares;

Oracle yardstick() {
  const auto make = [](const std::string& name) {
    const std::string base = "/usr/share/hunspell/" + name;
    return std::make_shared<Hunspell>((base + ".aff").c_str(), (base + ".dic").c_str());
  };
  const auto russian = make("ru_RU");
  const auto english = make("en_US");
  return {[=](const std::string& word, bool ru) { return (ru ? russian : english)->spell(word); },
          [=](const std::string& word, bool ru) -> std::optional<std::string> {
            const auto list = (ru ? russian : english)->suggest(word);
            if (list.empty()) return std::nullopt;
            return list.front();
          }};
}

void print(const char* what, const Shares& shares, bool verbose) {
  std::printf("  %-28s %7zu words  right %6.2f %%  wrong %6.3f %%\n", what, shares.words,
              shares.rightPercent(), shares.wrongPercent());
  if (!verbose) return;
  for (const std::string& note : shares.notes) std::printf("    %s\n", note.c_str());
}

void measure(const Oracle& oracle, const std::string& path, bool verbose) {
  std::ifstream in(path, std::ios::binary);
  const std::string text(std::istreambuf_iterator<char>(in), {});
  const bool russian = path.find(".ru.") != std::string::npos;
  std::printf("%s\n", path.c_str());
  if (path.ends_with(".tsv")) {
    print("misspellings", misspellings(oracle, text, russian), verbose);
    return;
  }
  print("text corrected", correctedText(oracle, text, russian), verbose);
  print("text switched", switchedText(oracle, text, russian), verbose);
  print("typed in the other layout", wrongLayout(oracle, text, russian), verbose);
}

}  // namespace

int main(int argc, char** argv) {
  bool verbose = false;
  bool compare = false;
  std::vector<std::string> files;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "-v") {
      verbose = true;
    } else if (argument == "-y") {
      compare = true;
    } else {
      files.push_back(argument);
    }
  }
  kivra::HunspellSpellChecker checker;
  checker.waitUntilLoaded();
  const Oracle oracle = kivra::quality::oracleOf(checker);
  for (const std::string& file : files) {
    measure(oracle, file, verbose);
    if (!compare) continue;
    std::printf("with hunspell's first suggestion: ");
    measure(yardstick(), file, verbose);
  }
}
