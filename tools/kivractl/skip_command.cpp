#include <algorithm>

#include "commands.h"
#include "support/text.h"

namespace kivra::control {

namespace {

bool isEqual(std::string_view entry, std::string_view other) {
  return text::lowercased(entry) == text::lowercased(other);
}

std::string list(const Environment& environment, bool asJson) {
  auto array = json::Value::array();
  std::string lines;
  for (const auto& entry : environment.settings.skipBundleIDs()) {
    const auto names = environment.namesOf(entry);
    array.push_back({{"entry", entry}, {"programs", names}});
    lines += entry;
    for (std::size_t i = 0; i < names.size(); ++i) lines += (i == 0 ? "\t" : ", ") + names[i];
    lines += '\n';
  }
  return asJson ? jsonLine(array) : lines;
}

void add(const Environment& environment, const std::vector<std::string>& names) {
  auto entries = environment.settings.skipBundleIDs();
  for (const auto& name : names) {
    if (text::trimmed(name).empty()) throw Failure{Reply::failed, "an empty name"};
    const auto entry = environment.identifierOf(name);
    const auto isThere = std::ranges::any_of(
        entries, [&](const std::string& other) { return isEqual(entry, other); });
    if (!isThere) entries.push_back(entry);
  }
  environment.settings.skipBundleIDs.set(std::move(entries));
}

void remove(const Environment& environment, const std::vector<std::string>& names) {
  auto entries = environment.settings.skipBundleIDs();
  for (const auto& name : names) {
    // As it stands in the list, or as this desktop calls it.
    const auto identifier = environment.identifierOf(name);
    const auto removed = std::erase_if(entries, [&](const std::string& entry) {
      return isEqual(entry, name) || isEqual(entry, identifier);
    });
    if (removed == 0) {
      throw Failure{Reply::failed, "not in the list: " + name + "; nothing was removed"};
    }
  }
  environment.settings.skipBundleIDs.set(std::move(entries));
}

std::string front(const Environment& environment, bool asJson) {
  const auto identifier = environment.frontmostIdentifier();
  if (!identifier) throw Failure{Reply::failed, "no window is in front, or it has no name"};
  return asJson ? jsonLine({{"front", *identifier}}) : *identifier + '\n';
}

}  // namespace

std::string skip(const Environment& environment, const Arguments& arguments) {
  const auto what = arguments.count() == 1 ? "list" : arguments.words()[1];
  if (what == "list") {
    arguments.requireAtMost(2);
    return list(environment, arguments.has("--json"));
  }
  if (what == "front") {
    arguments.requireAtMost(2);
    return front(environment, arguments.has("--json"));
  }
  if (what != "add" && what != "remove") {
    throw Failure{Reply::wrongUsage, "skip knows list, add, remove and front, not " + what};
  }
  arguments.at(2, "a program");
  const auto names = arguments.wordsFrom(2);
  if (what == "add") {
    add(environment, names);
  } else {
    remove(environment, names);
  }
  requireSaved(environment);
  return "";
}

}  // namespace kivra::control
