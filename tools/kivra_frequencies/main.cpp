// Turns the word data of Debian packages into Kivra's frequency files, at build time.
//
//   kivra-frequencies OUTPUT_DIRECTORY ru=FILE,FILE... en=FILE,FILE...
//
// A FILE ending in .lm is a language model of the package onboard-data (text in ARPA form, with
// counts); any other is the data of a tesseract-ocr language, in which lies a list of words from
// web pages, in each case in which they occur. One file comes out for each language.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spelling/letter_code.h"
#include "platform/spelling/word_frequencies.h"

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

std::uint8_t caseBit(std::u32string_view word) {
  return static_cast<std::uint8_t>(1U << static_cast<unsigned>(letterCaseOf(word)));
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
    entry.seen = static_cast<std::uint8_t>(entry.seen | caseBit(word) | seenCounted);
  }
}

// Reads numbers out of a file in memory; past the end everything is 0 and `good` is false.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  template <typename T>
  T next() {
    T value{};
    if (at_ + sizeof(T) > bytes_.size()) {
      good_ = false;
      return value;
    }
    std::memcpy(&value, bytes_.data() + at_, sizeof(T));
    at_ += sizeof(T);
    return value;
  }

  [[nodiscard]] bool good() const { return good_; }

 private:
  std::string_view bytes_;
  std::size_t at_ = 0;
  bool good_ = true;
};

// The parts of a .traineddata file lie behind a table of their offsets, -1 for a missing part.
std::string_view partOf(std::string_view data, std::size_t wanted) {
  Bytes bytes(data);
  const auto count = static_cast<std::size_t>(bytes.next<std::int32_t>());
  std::vector<std::int64_t> offsets;
  for (std::size_t i = 0; i < std::min<std::size_t>(count, 64); ++i) {
    offsets.push_back(bytes.next<std::int64_t>());
  }
  if (!bytes.good() || wanted >= offsets.size() || offsets[wanted] < 0) return {};
  auto end = static_cast<std::int64_t>(data.size());
  for (const std::int64_t offset : offsets) {
    if (offset > offsets[wanted]) end = std::min(end, offset);
  }
  if (end < offsets[wanted]) return {};
  return data.substr(static_cast<std::size_t>(offsets[wanted]),
                     static_cast<std::size_t>(end - offsets[wanted]));
}

constexpr std::size_t wordListPart = 19;
constexpr std::size_t characterSetPart = 21;

std::vector<std::u32string> readCharacters(std::string_view part) {
  std::vector<std::u32string> out;
  std::size_t pos = part.find('\n');
  while (pos != std::string_view::npos && pos + 1 < part.size()) {
    const std::string_view line = part.substr(pos + 1);
    out.push_back(decodeUtf8(line.substr(0, line.find_first_of(" \n"))));
    pos = part.find('\n', pos + 1);
  }
  return out;
}

// The word list is a graph of 64-bit edges: from the lowest bit the character's number, then three
// flags (last edge of its node, backward edge, word ends here), then the node it leads to.
class WordGraph {
 public:
  WordGraph(std::string_view part, std::vector<std::u32string> characters)
      : characters_(std::move(characters)) {
    Bytes bytes(part);
    const auto magic = bytes.next<std::int16_t>();
    const auto setSize = bytes.next<std::int32_t>();
    const auto edgeCount = bytes.next<std::int32_t>();
    if (magic != 42 || setSize <= 0 || edgeCount <= 0) return;
    while ((1U << letterBits_) < static_cast<std::uint32_t>(setSize) + 1) ++letterBits_;
    for (std::int32_t i = 0; i < edgeCount && bytes.good(); ++i) {
      edges_.push_back(bytes.next<std::uint64_t>());
    }
    if (!bytes.good()) edges_.clear();
  }

  template <typename Word>
  void forEachWord(Word&& word) const {
    std::u32string path;
    if (!edges_.empty()) walk(0, path, word);
  }

 private:
  template <typename Word>
  void walk(std::uint64_t node, std::u32string& path, Word& word) const {
    for (std::uint64_t at = node; at < edges_.size(); ++at) {
      const std::uint64_t edge = edges_[at];
      const auto letter = static_cast<std::size_t>(edge & ((1ULL << letterBits_) - 1));
      const auto flags = static_cast<unsigned>((edge >> letterBits_) & 7U);
      const std::uint64_t next = edge >> (letterBits_ + 3);
      if (letter < characters_.size() && (flags & 2U) == 0 && path.size() < 64) {
        const std::size_t length = path.size();
        path += characters_[letter];
        if ((flags & 4U) != 0) word(path);
        if (next != 0 && next < edges_.size()) walk(next, path, word);
        path.resize(length);
      }
      if ((flags & 1U) != 0) return;
    }
  }

  std::vector<std::u32string> characters_;
  std::vector<std::uint64_t> edges_;
  unsigned letterBits_ = 0;
};

bool readWebWords(const std::string& path, Table& table) {
  const auto data = readFile(path);
  if (!data) return false;
  const WordGraph graph(partOf(*data, wordListPart),
                        readCharacters(partOf(*data, characterSetPart)));
  std::size_t words = 0;
  graph.forEachWord([&](const std::u32string& word) {
    ++words;
    if (const auto code = encodeWord(word)) table[foldYo(*code)].seen |= caseBit(word);
  });
  return words > 0;
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
  for (std::size_t pos = equals + 1; pos < argument.size();) {
    const std::size_t end = std::min(argument.find(',', pos), argument.size());
    const std::string path = argument.substr(pos, end - pos);
    pos = end + 1;
    const bool isModel = path.ends_with(".lm");
    if (!(isModel ? readModel(path, model) : readWebWords(path, language.table))) return false;
  }
  addModel(model, language.table);
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
