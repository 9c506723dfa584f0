#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include "plain.h"
#include "sample.h"
#include "script.h"

namespace {

constexpr int usageError = 2;

constexpr const char* usage =
    "usage: kivra-desk [FILE]                                     plays a script (JSON Lines)\n"
    "       kivra-desk --plain [--source en|ru] [--trace] [FILE]  types a text\n"
    "       kivra-desk --sample                                   shows what Kivra does\n"
    "Without FILE, standard input is read.\n";

struct Arguments {
  bool plain = false;
  bool sample = false;
  bool help = false;
  kivra::desk::PlainOptions options;
  std::optional<std::string> file;
};

bool readSource(std::string_view language, Arguments& arguments) {
  if (language != "en" && language != "us" && language != "ru") return false;
  arguments.options.source = language == "ru" ? "ru" : "us";
  return true;
}

std::optional<Arguments> parse(int count, char** values) {
  Arguments arguments;
  bool needsPlain = false;
  for (int i = 1; i < count; ++i) {
    const std::string_view value = values[i];
    if (value == "--plain") {
      arguments.plain = true;
    } else if (value == "--help" || value == "-h") {
      arguments.help = true;
    } else if (value == "--sample") {
      arguments.sample = true;
    } else if (value == "--trace") {
      arguments.options.trace = needsPlain = true;
    } else if (value == "--source" && i + 1 < count) {
      if (!readSource(values[++i], arguments)) return std::nullopt;
      needsPlain = true;
    } else if (!arguments.file && (value == "-" || !value.starts_with('-'))) {
      arguments.file = value;
    } else {
      return std::nullopt;
    }
  }
  if (needsPlain && !arguments.plain) return std::nullopt;
  return arguments;
}

int run(const Arguments& arguments, std::istream& input) {
  if (!arguments.plain) return kivra::desk::playScript(input, std::cout);
  kivra::desk::typePlain(input, std::cout, std::cerr, arguments.options);
  return 0;
}

}  // namespace

int main(int count, char** values) {
  std::ios::sync_with_stdio(false);
  const auto arguments = parse(count, values);
  if (!arguments) {
    std::cerr << usage;
    return usageError;
  }
  if (arguments->help) {
    std::cout << usage;
    return 0;
  }
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
