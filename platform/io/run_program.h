#pragma once

#include <chrono>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace kivra {

/// What a program is given and how long it may take.
struct ProgramRun {
  std::vector<std::string> command;  ///< looked for in PATH
  std::string input{};
  std::chrono::milliseconds timeout{60000};
};

/// Runs a program in the locale C.UTF-8 to its end and answers what it wrote to standard output;
/// nothing when it cannot be started, fails, takes too long, or is stopped. Blocks.
std::optional<std::string> outputOfProgram(const ProgramRun& run, const std::stop_token& stop);

}  // namespace kivra
