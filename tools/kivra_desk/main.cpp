#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "plain.h"
#include "program_options.h"
#include "sample.h"
#include "script.h"

namespace {

constexpr const char* program = "kivra-desk";

constexpr const char* usage =
    "Usage: kivra-desk [FILE]                                     plays a script (JSON Lines)\n"
    "       kivra-desk --plain [--source en|ru] [--trace] [FILE]  types a text\n"
    "       kivra-desk --sample                                   shows what Kivra does\n"
    "Without FILE, standard input is read.\n";

struct Arguments {
  bool plain = false;
  bool sample = false;
  kivra::desk::PlainOptions options;
  std::optional<std::string> file;
};

bool isLanguage(std::string_view text) { return text == "en" || text == "us" || text == "ru"; }

/// Nothing after it has said what is wrong.
std::optional<Arguments> parse(const std::vector<std::string>& words) {
  Arguments arguments;
  std::string wrong;
  bool needsPlain = false;
  for (std::size_t i = 0; i < words.size() && wrong.empty(); ++i) {
    const auto& word = words[i];
    if (word == "--plain") {
      arguments.plain = true;
    } else if (word == "--sample") {
      arguments.sample = true;
    } else if (word == "--trace") {
      arguments.options.trace = needsPlain = true;
    } else if (word == "--source") {
      const auto language = ++i < words.size() ? words[i] : "";
      if (!isLanguage(language)) wrong = "--source takes en or ru";
      arguments.options.source = language == "ru" ? "ru" : "us";
      needsPlain = true;
    } else if (word != "-" && word.starts_with('-')) {
      wrong = "unknown option " + word;
    } else if (arguments.file) {
      wrong = "more than one file";
    } else {
      arguments.file = word;
    }
  }
  if (wrong.empty() && needsPlain && !arguments.plain) wrong = "--source and --trace need --plain";
  if (wrong.empty()) return arguments;
  kivra::complainOfUsage(program, wrong);
  return std::nullopt;
}

int run(const Arguments& arguments, std::istream& input) {
  if (!arguments.plain) return kivra::desk::playScript(input, std::cout);
  kivra::desk::typePlain(input, std::cout, std::cerr, arguments.options);
  return 0;
}

}  // namespace

int main(int count, char** values) {
  std::ios::sync_with_stdio(false);
  const std::vector<std::string> words(values + 1, values + count);
  if (const auto status = kivra::answerCommonOption(words, program, usage)) return *status;
  const auto arguments = parse(words);
  if (!arguments) return kivra::wrongUsageStatus;
  if (arguments->sample) {
    kivra::desk::playSample(std::cout);
    return 0;
  }
  if (!arguments->file || *arguments->file == "-") return run(*arguments, std::cin);
  std::ifstream file(*arguments->file);
  file.peek();  // a directory can be opened, but not read
  if (!file.is_open() || file.bad()) {
    std::cerr << "kivra-desk: cannot read " << *arguments->file << ": " << std::strerror(errno)
              << '\n';
    return 1;
  }
  return run(*arguments, file);
}
