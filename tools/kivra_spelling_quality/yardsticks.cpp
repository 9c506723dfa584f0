#include "yardsticks.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <hunspell.hxx>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include "platform/spelling/letter_code.h"

namespace kivra::quality {
namespace {

// What a speller says of one word; `guess` is empty for a word that it takes for right.
struct Answer {
  bool isValid = false;
  std::optional<std::string> guess;
};
using Answers = std::map<std::string, Answer>;

Answer answerOf(const std::string& line) {
  if (line[0] != '&') return {line[0] == '*' || line[0] == '+' || line[0] == '-', std::nullopt};
  const std::size_t colon = line.find(": ");
  if (colon == std::string::npos) return {};
  const std::size_t start = colon + 2;
  return {false, line.substr(start, line.find_first_of(",\n", start) - start)};
}

// Aspell's lines come in the order of the words, an empty one behind each word's. Nothing when it
// has not answered about all of them.
std::optional<Answers> askAspell(const std::vector<std::string>& words, const char* language) {
  namespace fs = std::filesystem;
  Answers answers;
  const fs::path file = fs::temp_directory_path() / ("kivra-aspell-" + std::to_string(getpid()));
  std::ofstream out(file);
  for (const std::string& word : words) out << '^' << word << '\n';
  out.close();
  const std::string command = "aspell -a --encoding=utf-8 --lang=" + std::string(language) + " < " +
                              file.string() + " 2>/dev/null";
  std::FILE* pipe = popen(command.c_str(), "r");
  std::array<char, 1U << 16U> line{};
  std::size_t at = 0;
  Answer answer{true, std::nullopt};
  bool isFirst = true;
  while (pipe != nullptr && std::fgets(line.data(), line.size(), pipe) != nullptr) {
    if (std::exchange(isFirst, false)) continue;
    if (line[0] != '\n') {
      answer = answerOf(line.data());
    } else if (at < words.size()) {
      answers[words[at++]] = std::exchange(answer, {true, std::nullopt});
    }
  }
  if (pipe != nullptr) pclose(pipe);
  fs::remove(file);
  if (at < words.size()) return std::nullopt;
  return answers;
}

Oracle fromAnswers(Answers english, Answers russian) {
  const auto both = std::make_shared<std::array<Answers, 2>>(
      std::array<Answers, 2>{std::move(english), std::move(russian)});
  const auto find = [both](const std::string& word, bool ru) {
    const auto found = (*both)[ru ? 1 : 0].find(word);
    return found == (*both)[ru ? 1 : 0].end() ? Answer{} : found->second;
  };
  return {[find](const std::string& word, bool ru) { return find(word, ru).isValid; },
          [find](const std::string& word, bool ru) { return find(word, ru).guess; }};
}

}  // namespace

Oracle hunspellYardstick() {
  const auto make = [](const std::string& name) {
    const std::string base = "/usr/share/hunspell/" + name;
    return std::make_shared<Hunspell>((base + ".aff").c_str(), (base + ".dic").c_str());
  };
  const auto russian = make("ru_RU");
  const auto english = make("en_US");
  const auto known = std::make_shared<std::map<std::string, std::optional<std::string>>>();
  return {[=](const std::string& word, bool ru) { return (ru ? russian : english)->spell(word); },
          [=](const std::string& word, bool ru) -> std::optional<std::string> {
            const auto found = known->find(word);
            if (found != known->end()) return found->second;
            const auto list = (ru ? russian : english)->suggest(word);
            return (*known)[word] = list.empty() ? std::nullopt : std::optional(list.front());
          }};
}

std::optional<Oracle> aspellYardstick(const std::vector<AskedWord>& words) {
  std::array<std::vector<std::string>, 2> asked;
  for (const AskedWord& word : words) {
    const bool isPlain = std::ranges::all_of(decodeUtf8(word.word), isLetterScalar);
    if (isPlain) asked[word.russian ? 1 : 0].push_back(word.word);
  }
  auto english = askAspell(asked[0], "en_US");
  auto russian = askAspell(asked[1], "ru");
  if (!english || !russian) return std::nullopt;
  return fromAnswers(*std::move(english), *std::move(russian));
}

Oracle recorder(std::vector<AskedWord>& asked) {
  const auto seen = std::make_shared<std::set<std::pair<std::string, bool>>>();
  return {[seen, &asked](const std::string& word, bool russian) {
            if (seen->emplace(word, russian).second) asked.push_back({word, russian});
            return false;
          },
          [](const std::string&, bool) { return std::nullopt; }};
}

}  // namespace kivra::quality
