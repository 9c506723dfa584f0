#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "layout/exception_store.h"
#include "layout/replacement_store.h"
#include "settings/settings_store.h"

namespace kivra::control {

/// What became of a command; the numbers are exit statuses.
struct Reply {
  enum Status { done = 0, failed = 1, wrongUsage = 2, notRunning = 3 };

  int status = done;
  std::string output{};   ///< for standard output
  std::string message{};  ///< for standard error, without the program's name; may be empty

  bool operator==(const Reply&) const = default;
};

/// A command line behind the program's name, and the file that it reads.
struct Request {
  std::vector<std::string> words;
  std::string input;
};

/// How a running program fares.
struct State {
  bool isIntercepting = false;
  std::vector<std::string> missing{};  ///< what keeps it from its work, in words for the user
  /// What the session has of all that it needs, a line each, likewise.
  std::vector<std::string> diagnosis{};
};

/// What only a running program can do.
struct RunningProgram {
  std::function<void()> showSettings;
  std::function<void()> quit;
  std::function<void(bool)> setEnabled;
  std::function<void(std::chrono::seconds)> pause;
  /// Identifier and language of each layout, the user's order.
  std::function<std::vector<std::pair<std::string, std::string>>()> layouts;
  std::function<State()> state;
};

/// What the commands of kivractl work on: the stores of the running program, or those of this
/// process while none runs.
struct Environment {
  SettingsStore& settings;
  ExceptionStore& exceptions;
  /// Made at the first use: making it stores what a first start would.
  std::function<ReplacementStore&()> replacements;
  std::function<std::optional<std::string>()> frontmostIdentifier;
  /// The name under which excluded applications know a program of this desktop.
  std::function<std::string(std::string_view name)> identifierOf;
  /// The programs of this desktop that an entry of the excluded applications stands for.
  std::function<std::vector<std::string>(std::string_view entry)> namesOf;
  std::function<bool()> isSaved;            ///< everything that was stored is on disk
  const RunningProgram* running = nullptr;  ///< null while none runs
};

/// The options of all commands, each of which takes those that mean something to it.
const std::vector<std::string_view>& allOptions();

/// Carries out a command. Nothing throws; a command that fails changes nothing.
Reply carryOut(const Environment& environment, const Request& request);

}  // namespace kivra::control
