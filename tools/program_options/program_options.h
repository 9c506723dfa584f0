#pragma once

#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kivra {

/// The exit status of a program that is used wrongly.
inline constexpr int wrongUsageStatus = 2;

/// Answers `--help` (`-h`) and `--version` where they stand first, the same in all programs: the
/// status to end with, nothing when neither is asked for.
inline std::optional<int> answerCommonOption(const std::vector<std::string>& words,
                                             std::string_view program, std::string_view usage) {
  if (words.empty()) return std::nullopt;
  if (words[0] == "--help" || words[0] == "-h") {
    std::cout << usage;
  } else if (words[0] == "--version") {
    std::cout << program << " " KIVRA_VERSION "\n";
  } else {
    return std::nullopt;
  }
  return std::cout.flush() ? 0 : 1;
}

/// Says what is wrong with the command line; the status to end with.
inline int complainOfUsage(std::string_view program, std::string_view what) {
  std::cerr << program << ": " << what << "\nTry '" << program << " --help'.\n";
  return wrongUsageStatus;
}

}  // namespace kivra
