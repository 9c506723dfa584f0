// Turns the word data of Debian packages into Kivra's frequency files, at build time.
//
//   kivra-frequencies OUTPUT_DIRECTORY ru=FILE,FILE... en=FILE,FILE...
//
// A FILE ending in .lm is a language model of the package onboard-data (text in ARPA form, with
// counts); one in .traineddata is the data of a tesseract-ocr language, in which lies a list of
// words from web pages, in each case in which they occur; any other is a text, or a catalogue of
// messages, about computers, whose terms are counted. One file comes out for each language.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spelling/letter_code.h"
#include "platform/spelling/word_frequencies.h"
#include "term_counter.h"
#include "web_words.h"

namespace kivra {
namespace {

struct Entry {
  double perHundredMillion = 0;
  double inLowerCase = 0;  // the part of it that was written in lower case
  std::uint8_t seen = 0;
};

// Keyed by encoded word, ё folded into е as most texts write it.
using Table = std::map<std::string, Entry>;

// A word that only the web list has gets a guessed count per hundred million words: the more cases
// it was seen in, the more common it is. The three figures lie below the rarest counted words.
constexpr double guessedCounts[] = {0, 8, 25, 70};

std::optional<std::string> readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(in), {});
}

struct Model {
  std::vector<std::pair<std::u32string, double>> words;
  double total = 0;
};

bool readModel(const std::string& path, Model& model) {
  const auto text = readFile(path);
  if (!text) return false;
  bool inside = false;
  for (std::size_t pos = 0; pos < text->size();) {
    const std::size_t end = std::min(text->find('\n', pos), text->size());
    const std::string_view line = std::string_view(*text).substr(pos, end - pos);
    pos = end + 1;
    if (line.starts_with("\\")) inside = line == "\\1-grams:";
    const std::size_t space = line.find(' ');
    if (!inside || space == std::string_view::npos) continue;
    const double count = std::atof(std::string(line.substr(0, space)).c_str());
    model.total += count;
    model.words.emplace_back(decodeUtf8(line.substr(space + 1)), count);
  }
  return !model.words.empty();
}

// Several models of one language (American and British) are counted as one.
void addModel(const Model& model, Table& table) {
  for (const auto& [word, count] : model.words) {
    const auto code = encodeWord(word);
    if (!code) continue;
    Entry& entry = table[foldYo(*code)];
    const double perHundredMillion = count * 1e8 / model.total;
    entry.perHundredMillion += perHundredMillion;
    if (letterCaseOf(word) == LetterCase::lower) entry.inLowerCase += perHundredMillion;
    entry.seen = static_cast<std::uint8_t>(entry.seen | seenIn(letterCaseOf(word)) | seenCounted);
  }
}

bool readWebWords(const std::string& path, Table& table) {
  const auto data = readFile(path);
  if (!data) return false;
  std::size_t words = 0;
  forEachWebWord(*data, [&](const std::u32string& word) {
    ++words;
    const auto code = encodeWord(word);
    if (code) table[foldYo(*code)].seen |= seenIn(letterCaseOf(word));
  });
  return words > 0;
}

// How much of what people write is of the trade that the texts are about.
constexpr double shareOfTerms = 0.02;

// The language models know the words that they counted better.
void addTerms(const TermCounter& counter, Table& table) {
  for (const Term& term : counter.terms()) {
    Entry& entry = table[term.code];
    if ((entry.seen & seenCounted) != 0) continue;
    entry.perHundredMillion = term.share * shareOfTerms * 1e8;
    entry.seen = static_cast<std::uint8_t>(entry.seen | term.seen);
  }
}

bool isWord(std::string_view code, bool russian) {
  return std::all_of(code.begin(), code.end(),
                     [&](char c) {
                       const auto byte = static_cast<unsigned char>(c);
                       return c == '\'' || c == '-' || (byte >= 0x80) == russian;
                     }) &&
         code.front() != '-' && code.front() != '\'' && code.back() != '-' && code.back() != '\'';
}

double countOf(const Entry& entry) {
  if (entry.perHundredMillion > 0) return entry.perHundredMillion;
  return guessedCounts[std::popcount(static_cast<unsigned>(entry.seen & 7U))];
}

int levelOf(const Entry& entry) {
  return std::clamp(static_cast<int>(std::lround(4 * std::log1p(countOf(entry)))), 1, 63);
}

// The letter keys of the two layouts; a key that gives a sign in one of them has none there.
constexpr std::string_view keysEnglish = "qwertyuiop  asdfghjkl  zxcvbnm  ";
constexpr std::u32string_view keysRussian = U"йцукенгшщзхъфывапролджэячсмитьбю";

// What the keys of a word give in the other layout; empty when that is no word.
std::string twinOf(std::string_view code) {
  std::string twin;
  for (const char c : code) {
    char other = ' ';
    for (std::size_t key = 0; key < keysEnglish.size(); ++key) {
      const char english = keysEnglish[key];
      const char russian = cyrillicCode(keysRussian[key]);
      if (c == english) other = russian;
      if (c == russian) other = english;
    }
    if (other == ' ') return {};
    twin.push_back(other);
  }
  return twin;
}

// How many times more common a word of the other language on the same keys must be to make this one
// no word at all. Names and abbreviations win nothing: "ha" is not the wrong layout for "рф". With
// these ratios the words lost are 1 or 2 in 10,000 of running text, the words won one in ten. The
// ratio is higher where Russian words would be lost, as the lists, made from an encyclopedia, make
// too little of the words of stories and talk.
constexpr double russianWinsAt = 15;
constexpr double englishWinsAt = 80;

void markShadowed(Table& table, const Table& others, double ratio) {
  for (auto& [code, entry] : table) {
    const auto twin = others.find(twinOf(code));
    if (twin == others.end() || twin->second.inLowerCase < ratio * countOf(entry)) continue;
    entry.seen |= seenShadowed;
  }
}

bool writeTable(const std::string& path, const Table& table, bool russian) {
  std::ofstream out(path, std::ios::binary);
  out << frequencyFileHeader << '\n';
  for (const auto& [code, entry] : table) {
    if (code.empty() || !isWord(code, russian)) continue;
    out << decodeWord(code) << '\t' << levelOf(entry) << '\t' << int{entry.seen} << '\n';
  }
  out.close();
  return static_cast<bool>(out);
}

struct Language {
  std::string code;
  Table table;
};

bool readLanguage(const std::string& argument, Language& language) {
  const std::size_t equals = argument.find('=');
  if (equals == std::string::npos) return false;
  language.code = argument.substr(0, equals);
  Model model;
  TermCounter terms;
  for (std::size_t pos = equals + 1; pos < argument.size();) {
    const std::size_t end = std::min(argument.find(',', pos), argument.size());
    const std::string path = argument.substr(pos, end - pos);
    pos = end + 1;
    if (path.ends_with(".lm")) {
      if (!readModel(path, model)) return false;
    } else if (path.ends_with(".traineddata")) {
      if (!readWebWords(path, language.table)) return false;
    } else {
      const auto text = readFile(path);
      if (!text) return false;
      terms.add(*text);
    }
  }
  addModel(model, language.table);
  addTerms(terms, language.table);
  return true;
}

int run(const std::vector<std::string>& arguments) {
  std::vector<Language> languages(2);
  if (arguments.size() != 4) {
    std::fprintf(stderr, "usage: kivra-frequencies DIRECTORY ru=FILE,FILE... en=FILE,FILE...\n");
    return 2;
  }
  for (std::size_t i = 0; i < languages.size(); ++i) {
    if (readLanguage(arguments[i + 2], languages[i])) continue;
    std::fprintf(stderr, "kivra-frequencies: cannot read %s\n", arguments[i + 2].c_str());
    return 1;
  }
  markShadowed(languages[0].table, languages[1].table, englishWinsAt);
  markShadowed(languages[1].table, languages[0].table, russianWinsAt);
  for (const Language& language : languages) {
    const std::string path = arguments[1] + "/" + language.code + ".freq";
    if (writeTable(path, language.table, language.code == "ru")) continue;
    std::fprintf(stderr, "kivra-frequencies: cannot write %s\n", path.c_str());
    return 1;
  }
  return 0;
}

}  // namespace
}  // namespace kivra

int main(int argc, char** argv) { return kivra::run({argv, argv + argc}); }
