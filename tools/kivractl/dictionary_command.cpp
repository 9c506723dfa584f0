#include <algorithm>

#include "commands.h"
#include "dictionary_text.h"
#include "support/text.h"

namespace kivra::control {

namespace {

using Entry = ReplacementStore::Entry;

/// By the option or else the file's name; TSV where neither tells.
DictionaryFormat formatOf(const Arguments& arguments, const std::string& file) {
  if (arguments.has("--tsv")) return DictionaryFormat::tsv;
  if (arguments.has("--csv")) return DictionaryFormat::csv;
  if (arguments.has("--yaml")) return DictionaryFormat::yaml;
  if (const auto format = dictionaryFormat(file)) return *format;
  if (file == "-") return DictionaryFormat::tsv;
  throw Failure{Reply::wrongUsage, "the name " + file +
                                       " does not tell the format: give it the ending .tsv, .csv "
                                       "or .yml, or say --tsv, --csv or --yaml"};
}

std::string list(const ReplacementStore& replacements, bool asJson) {
  if (!asJson) return writtenDictionary(replacements.entries(), DictionaryFormat::tsv);
  auto array = json::Value::array();
  for (const auto& entry : replacements.entries()) {
    array.push_back({{"pattern", entry.pattern}, {"replacement", entry.replacement}});
  }
  return jsonLine(array);
}

void add(ReplacementStore& replacements, const Arguments& arguments) {
  arguments.requireAtMost(4);
  const auto& pattern = arguments.at(2, "a pattern");
  const auto& replacement = arguments.at(3, "a replacement");
  if (text::characterCount(text::trimmed(pattern)) < 2) {
    throw Failure{Reply::failed, "a pattern needs at least two characters"};
  }
  if (text::trimmed(replacement).empty()) throw Failure{Reply::failed, "the replacement is empty"};
  replacements.add(pattern, replacement);
}

void remove(ReplacementStore& replacements, const Arguments& arguments) {
  arguments.at(2, "a pattern");
  auto entries = replacements.entries();
  for (const auto& pattern : arguments.wordsFrom(2)) {
    const auto removed = std::erase_if(entries, [&](const Entry& entry) {
      return ReplacementStore::normalize(entry.pattern) == ReplacementStore::normalize(pattern);
    });
    if (removed == 0) {
      throw Failure{Reply::failed, "not in the dictionary: " + pattern + "; nothing was removed"};
    }
  }
  replacements.setEntries(std::move(entries));
}

/// What an import would make of the dictionary.
struct Merged {
  std::vector<Entry> entries{};
  std::size_t added = 0;
  std::size_t changed = 0;
};

Merged merged(const ReplacementStore& replacements,
              const std::vector<DictionaryText::Pair>& pairs) {
  Merged result{.entries = replacements.entries()};
  std::unordered_map<std::string, std::size_t> positions;
  for (std::size_t i = 0; i < result.entries.size(); ++i) {
    positions.emplace(ReplacementStore::normalize(result.entries[i].pattern), i);
  }
  for (const auto& pair : pairs) {
    const std::string pattern(text::trimmed(pair.pattern));
    const std::string replacement(text::trimmed(pair.replacement));
    const auto known = positions.find(ReplacementStore::normalize(pattern));
    if (known == positions.end()) {
      result.entries.push_back({Uuid::random(), pattern, replacement});
      ++result.added;
    } else if (result.entries[known->second].replacement != replacement) {
      result.entries[known->second].replacement = replacement;
      ++result.changed;
    }
  }
  return result;
}

std::string notes(const std::string& file, const std::vector<LineNote>& lines,
                  const std::string& kind) {
  std::string text;
  for (const auto& [line, note] : lines) {
    text.append(file).append(":").append(std::to_string(line)).append(": ");
    text.append(kind).append(note).append("\n");
  }
  return text;
}

json::Value notesAsJson(const std::vector<LineNote>& lines) {
  auto array = json::Value::array();
  for (const auto& [line, note] : lines) array.push_back({{"line", line}, {"text", note}});
  return array;
}

std::string summary(const Merged& result, const DictionaryText& read, const Arguments& arguments) {
  if (arguments.has("--json")) {
    return jsonLine({{"added", result.added},
                     {"changed", result.changed},
                     {"leftOut", notesAsJson(read.leftOut)},
                     {"bad", notesAsJson(read.bad)}});
  }
  const auto would = arguments.has("--dry-run") ? "would be " : "";
  return std::to_string(result.added) + " entries " + would + "added, " +
         std::to_string(result.changed) + " " + would + "changed\n";
}

Reply import(ReplacementStore& replacements, const Arguments& arguments, const std::string& input) {
  arguments.requireAtMost(3);
  const auto& file = arguments.at(2, "a file");
  const auto read = readDictionary(input, formatOf(arguments, file));
  auto message = notes(file, read.bad, "") + notes(file, read.leftOut, "left out: ");
  if (!read.bad.empty()) {
    message += "nothing was imported";
    const auto output = arguments.has("--json") ? summary({}, read, arguments) : "";
    return {Reply::failed, output, message};
  }
  auto result = merged(replacements, read.pairs);
  const auto output = summary(result, read, arguments);
  const auto isChange = result.added + result.changed > 0;
  if (isChange && !arguments.has("--dry-run")) replacements.setEntries(std::move(result.entries));
  if (message.ends_with('\n')) message.pop_back();
  return {Reply::done, output, message};
}

}  // namespace

Reply dictionary(const Environment& environment, const Arguments& arguments,
                 const std::string& input) {
  auto& replacements = environment.replacements();
  const auto what = arguments.count() == 1 ? "list" : arguments.words()[1];
  if (what == "list") {
    arguments.requireAtMost(2);
    return {.output = list(replacements, arguments.has("--json"))};
  }
  if (what == "export") {
    arguments.requireAtMost(3);
    const auto file = arguments.count() == 3 ? arguments.words()[2] : "-";
    return {.output = writtenDictionary(replacements.entries(), formatOf(arguments, file))};
  }
  if (what == "import") {
    auto reply = import(replacements, arguments, input);
    requireSaved(environment);
    return reply;
  }
  if (what == "add") {
    add(replacements, arguments);
  } else if (what == "remove") {
    remove(replacements, arguments);
  } else {
    throw Failure{Reply::wrongUsage,
                  "dictionary knows list, add, remove, import and export, not " + what};
  }
  requireSaved(environment);
  return {};
}

}  // namespace kivra::control
