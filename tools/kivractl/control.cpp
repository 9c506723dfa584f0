#include "control.h"

#include <charconv>

#include "commands.h"

namespace kivra::control {

namespace {

const RunningProgram& runningProgram(const Environment& environment) {
  if (environment.running != nullptr) return *environment.running;
  throw Failure{Reply::notRunning, "Kivra does not run; `kivra` starts it"};
}

/// "90s", "5m", "1h", "90" (minutes).
std::chrono::seconds duration(const std::string& text) {
  constexpr std::chrono::seconds longest = std::chrono::hours(24);
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const std::string_view unit(end, static_cast<std::size_t>(text.data() + text.size() - end));
  std::uint64_t seconds = 0;
  if (unit == "s") seconds = number;
  if (unit == "m" || unit.empty()) seconds = std::uint64_t{number} * 60;
  if (unit == "h") seconds = std::uint64_t{number} * 3600;
  if (error != std::errc() || seconds == 0 || seconds > std::uint64_t(longest.count())) {
    throw Failure{Reply::wrongUsage, "not a time up to 24h: " + text + " (for example 30m, 1h)"};
  }
  return std::chrono::seconds(seconds);
}

void setEnabled(const Environment& environment, bool isEnabled) {
  if (environment.running != nullptr) {
    environment.running->setEnabled(isEnabled);
  } else {
    environment.settings.isEnabled.set(isEnabled);
  }
  requireSaved(environment);
}

std::string layouts(const Environment& environment) {
  auto list = json::Value::array();
  for (const auto& [id, language] : runningProgram(environment).layouts()) {
    list.push_back({{"id", id}, {"language", language}});
  }
  return jsonLine(list);
}

/// The state is an answer too while none runs; the exit status tells it to scripts.
Reply status(const Environment& environment, bool asJson) {
  const auto isRunning = environment.running != nullptr;
  const auto state = isRunning ? environment.running->state() : State{};
  const auto isEnabled = environment.settings.isEnabled();
  Reply reply{.status = isRunning ? Reply::done : Reply::notRunning};
  if (asJson) {
    reply.output = jsonLine({{"running", isRunning},
                             {"enabled", isEnabled},
                             {"intercepting", state.isIntercepting},
                             {"missing", state.missing},
                             {"session", state.diagnosis}});
    return reply;
  }
  std::vector<std::string> lines = {isRunning ? "Kivra runs" : "Kivra does not run",
                                    isEnabled ? "words are mended: on" : "words are mended: off"};
  if (isRunning) {
    lines.emplace_back(state.isIntercepting ? "the keyboard is watched"
                                            : "the keyboard is not watched");
  }
  for (const auto& missing : state.missing) lines.push_back("missing: " + missing);
  lines.insert(lines.end(), state.diagnosis.begin(), state.diagnosis.end());
  reply.output = listed(lines, false);
  return reply;
}

Reply dispatched(const Environment& environment, const Arguments& arguments,
                 const std::string& input) {
  const auto& command = arguments.at(0, "a command");
  if (command == "learned") return {.output = learned(environment, arguments)};
  if (command == "skip") return {.output = skip(environment, arguments)};
  if (command == "dictionary") return dictionary(environment, arguments, input);
  if (command == "pause") {
    arguments.requireAtMost(2);
    const auto time = duration(arguments.at(1, "how long (30m, 1h)"));
    runningProgram(environment).pause(time);
    return {};
  }
  arguments.requireAtMost(1);
  if (command == "on" || command == "off") {
    setEnabled(environment, command == "on");
  } else if (command == "settings") {
    runningProgram(environment).showSettings();
  } else if (command == "quit") {
    runningProgram(environment).quit();
  } else if (command == "status") {
    return status(environment, arguments.has("--json"));
  } else if (command == "layouts") {
    return {.output = layouts(environment)};
  } else {
    throw Failure{Reply::wrongUsage, "unknown command " + command};
  }
  return {};
}

}  // namespace

const std::vector<std::string_view>& allOptions() {
  static const std::vector<std::string_view> options = {"--json", "--dry-run", "--tsv", "--csv",
                                                        "--yaml"};
  return options;
}

Reply carryOut(const Environment& environment, const Request& request) {
  try {
    return dispatched(environment, Arguments(request.words, allOptions()), request.input);
  } catch (const Failure& failure) {
    return {failure.status, "", failure.message};
  }
}

void requireSaved(const Environment& environment) {
  if (!environment.isSaved()) throw Failure{Reply::failed, "the change could not be stored"};
}

std::string listed(const std::vector<std::string>& lines, bool asJson) {
  if (asJson) return jsonLine(lines);
  std::string text;
  for (const auto& line : lines) text += line + '\n';
  return text;
}

}  // namespace kivra::control
