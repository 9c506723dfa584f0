#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <ostream>
#include <string>

namespace kivra {

/// What came of a command.
struct Outcome {
  int status = -1;
  std::string output;

  bool operator==(const Outcome&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
  return stream << outcome.status << ": " << outcome.output;
}

/// Runs the command in the shell, until it ends.
inline Outcome outcomeOf(const std::string& command) {
  auto* const pipe = ::popen(command.c_str(), "r");
  Outcome outcome;
  std::array<char, 4096> buffer = {};
  while (const auto size = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
    outcome.output.append(buffer.data(), size);
  }
  outcome.status = WEXITSTATUS(::pclose(pipe));
  return outcome;
}

}  // namespace kivra
