// kivractl: what Kivra's window has no place for, from a terminal.

#include <chrono>
#include <iostream>
#include <string>
#include <thread>

#include "files.h"
#include "local_program.h"
#include "platform/session/instance_claim.h"
#include "platform/session/session_client.h"
#include "platform/session/session_names.h"
#include "program_options.h"
#include "support/text.h"
#include "why.h"

namespace kivra::control {

namespace {

constexpr const char* program = "kivractl";

constexpr const char* usage = R"(Usage: kivractl [--json] COMMAND

  status                           whether Kivra runs and works, and what it lacks
  on, off                          switch Kivra on or off
  pause TIME                       switch it off for a time (90s, 30m, 1h; at most 24h)
  settings                         open the settings window
  quit                             end Kivra

  learned                          the words that are left alone
  learned add|forget WORD...       leave words alone, or no longer

  dictionary list                  your replacements: pattern, tab, replacement
  dictionary add PATTERN TEXT      add a replacement, or change it
  dictionary remove PATTERN...     remove replacements
  dictionary export FILE           write all of them to a file
  dictionary import [--dry-run] FILE
                                   add those of a file, all or none; --dry-run only says what
                                   would be done
                                   FILE ends with .tsv, .csv or .yml (matches with trigger and
                                   replace); --tsv, --csv and --yaml say it for other names;
                                   - is standard input or output

  skip list                        the applications in which nothing is mended
  skip add|remove NAME...          add or remove some
  skip front [SECONDS]             the name of the window in front, so many seconds from now

  why TEXT                         how Kivra decides about a text, in each layout

A running Kivra does it at once; while none runs, the stored values are read and changed. --json
prints JSON.

Exit status: 0 done, 1 it failed and nothing was changed, 2 wrong usage, 3 Kivra does not run.
)";

/// Throws Failure when a running program cannot be asked.
Reply runningOrLocal(const Request& request) {
  try {
    if (const auto reply = session_client::run(request.words, request.input)) {
      return {reply->status, reply->output, reply->message};
    }
  } catch (const session_client::NoAnswer& error) {
    throw Failure{Reply::failed, std::string("Kivra does not answer: ") + error.what()};
  }
  if (const auto pid = InstanceClaim(session_names::service).lockHolder()) {
    throw Failure{Reply::failed, "Kivra runs (pid " + std::to_string(*pid) +
                                     "), but is not on this session's bus"};
  }
  return LocalProgram().carryOut(request);
}

LayoutNames enabledLayouts() {
  LayoutNames usual = {{"us", "en"}, {"ru", "ru"}};
  try {
    const auto reply = session_client::run({"layouts"}, "");
    return reply ? parsedLayouts(reply->output).value_or(usual) : usual;
  } catch (const session_client::NoAnswer&) {
    return usual;
  }
}

Reply why(const Arguments& arguments) {
  arguments.requireAtMost(2);
  const auto& text = arguments.at(1, "a text");
  if (text::trimmed(text).empty()) throw Failure{Reply::wrongUsage, "the text is empty"};
  LocalProgram stored;
  const auto explanations = explain(text, stored.defaults(), enabledLayouts());
  return {.output = arguments.has("--json") ? explanationJson(explanations)
                                            : explanationText(explanations)};
}

Reply skipFront(Request request, const Arguments& arguments) {
  arguments.requireAtMost(3);
  if (arguments.count() == 3) {
    std::this_thread::sleep_for(std::chrono::seconds(secondsOf(arguments.words()[2])));
    std::erase(request.words, arguments.words()[2]);
  }
  return runningOrLocal(request);
}

/// A command with what this process has to do for it: files are those of who calls.
Reply carriedOut(const std::vector<std::string>& words) {
  for (const auto& word : words) {
    if (!text::isValidUtf8(word)) throw Failure{Reply::wrongUsage, "an argument is not UTF-8"};
  }
  const Arguments arguments(words, allOptions());
  const auto is = [&](std::size_t position, std::string_view word) {
    return arguments.count() > position && arguments.words()[position] == word;
  };
  if (is(0, "why")) return why(arguments);
  if (is(0, "skip") && is(1, "front")) return skipFront({words, ""}, arguments);
  if (!is(0, "dictionary") || arguments.count() < 3) return runningOrLocal({words, ""});
  const auto& file = arguments.words()[2];
  if (is(1, "import")) return runningOrLocal({words, readFile(file)});
  auto reply = runningOrLocal({words, ""});
  if (is(1, "export") && reply.status == Reply::done && file != "-") {
    writeFile(file, std::exchange(reply.output, ""));
  }
  return reply;
}

}  // namespace

}  // namespace kivra::control

int main(int count, char** values) {
  using namespace kivra::control;
  const std::vector<std::string> words(values + 1, values + count);
  if (const auto status = kivra::answerCommonOption(words, program, usage)) return *status;
  try {
    const auto reply = carriedOut(words);
    if (reply.status == Reply::wrongUsage) return kivra::complainOfUsage(program, reply.message);
    std::cout << reply.output << std::flush;
    if (!reply.message.empty()) std::cerr << program << ": " << reply.message << '\n';
    return std::cout ? reply.status : Reply::failed;
  } catch (const Failure& failure) {
    if (failure.status == Reply::wrongUsage) {
      return kivra::complainOfUsage(program, failure.message);
    }
    std::cerr << program << ": " << failure.message << '\n';
    return failure.status;
  }
}
