#include "commands.h"
#include "support/text.h"

namespace kivra::control {

namespace {

/// Throws Failure unless each of the words is learned.
void requireLearned(const ExceptionStore& exceptions, const std::vector<std::string>& words) {
  for (const auto& word : words) {
    if (!exceptions.contains(word) && !exceptions.contains(text::lowercased(word))) {
      throw Failure{Reply::failed, "not learned: " + word + "; nothing was forgotten"};
    }
  }
}

}  // namespace

std::string learned(const Environment& environment, const Arguments& arguments) {
  auto& exceptions = environment.exceptions;
  if (arguments.count() == 1) {
    return listed({exceptions.tokens().begin(), exceptions.tokens().end()},
                  arguments.has("--json"));
  }
  const auto& what = arguments.words()[1];
  const auto words = arguments.wordsFrom(2);
  if (what != "add" && what != "forget") {
    throw Failure{Reply::wrongUsage, "learned knows add and forget, not " + what};
  }
  arguments.at(2, "a word");
  if (what == "add") {
    for (const auto& word : words) {
      if (text::trimmed(word).empty()) throw Failure{Reply::failed, "an empty word"};
    }
    for (const auto& word : words) exceptions.add(word);
  } else {
    requireLearned(exceptions, words);
    for (const auto& word : words) exceptions.remove(word);
  }
  requireSaved(environment);
  return "";
}

}  // namespace kivra::control
