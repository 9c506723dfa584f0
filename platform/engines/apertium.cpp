#include "platform/engines/apertium.h"

#include <sstream>
#include <string_view>
#include <utility>

#include "platform/engines/language_code.h"
#include "platform/io/run_program.h"

namespace kivra {

namespace {

constexpr auto listTimeout = std::chrono::seconds(10);
constexpr std::string_view packagePrefix = "apertium-";

using Pair = std::pair<std::string, std::string>;

std::vector<std::string> wordsOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

std::optional<Pair> pairOf(std::string_view name) {
  const auto hyphen = name.find('-');
  if (hyphen == std::string_view::npos || name.find('-', hyphen + 1) != std::string_view::npos) {
    return std::nullopt;
  }
  return Pair(name.substr(0, hyphen), name.substr(hyphen + 1));
}

bool areSame(std::string_view one, std::string_view other) {
  return threeLetterLanguage(one) == threeLetterLanguage(other);
}

/// How well a mode's target suits the wanted one: its very region, no region, some other.
int suits(const std::string& modeTarget, const std::string& target) {
  const auto region = regionOf(modeTarget);
  if (!region.empty() && region == regionOf(target)) return 3;
  return region.empty() ? 2 : 1;
}

}  // namespace

std::optional<std::string> Apertium::mode(const std::string& source, const std::string& target,
                                          const std::stop_token& stop) const {
  const auto list =
      outputOfProgram({.command = {programs_.apertium, "-l"}, .timeout = listTimeout}, stop);
  std::optional<std::string> best;
  int bestSuits = 0;
  for (const auto& name : wordsOf(list.value_or(""))) {
    const auto pair = pairOf(name);
    if (!pair || !areSame(pair->first, source) || !areSame(pair->second, target)) continue;
    const auto itSuits = suits(pair->second, target);
    if (itSuits <= bestSuits) continue;
    best = name;
    bestSuits = itSuits;
  }
  return best;
}

std::optional<std::string> Apertium::missingPackage(const std::string& source,
                                                    const std::string& target,
                                                    const std::stop_token& stop) const {
  const auto list = outputOfProgram(
      {.command = {programs_.aptCache, "pkgnames", "apertium-"}, .timeout = listTimeout}, stop);
  for (const auto& name : wordsOf(list.value_or(""))) {
    if (!name.starts_with(packagePrefix)) continue;
    const auto pair = pairOf(std::string_view(name).substr(packagePrefix.size()));
    if (!pair) continue;
    const auto isThere = areSame(pair->first, source) && areSame(pair->second, target);
    const auto isBack = areSame(pair->first, target) && areSame(pair->second, source);
    if (!isThere && !isBack) continue;
    // Installed and yet without the mode: the pair goes the other way only.
    return isInstalled(name, stop) ? std::nullopt : std::optional(name);
  }
  return std::nullopt;
}

std::optional<std::string> Apertium::translate(const std::string& text, const std::string& mode,
                                               const std::stop_token& stop) const {
  // -u: no asterisks on words that it does not know.
  return outputOfProgram({.command = {programs_.apertium, "-u", mode}, .input = text}, stop);
}

bool Apertium::isInstalled(const std::string& package, const std::stop_token& stop) const {
  const auto state =
      outputOfProgram({.command = {programs_.dpkgQuery, "-W", "-f=${db:Status-Status}", package},
                       .timeout = listTimeout},
                      stop);
  return state == "installed";
}

}  // namespace kivra
