#include "layout/replacement_store.h"

#include <algorithm>
#include <utility>

#include "support/json.h"
#include "support/text.h"

namespace kivra {

namespace {

using Entry = ReplacementStore::Entry;

constexpr auto entriesKey = "kivra.replacements";
constexpr auto seedKey = "kivra.replacements.seed.ios";

std::optional<Entry> decodedEntry(const json::Value& value) {
  const auto id = json::stringMember(value, "id");
  const auto uuid = id ? Uuid::parsed(*id) : std::nullopt;
  auto pattern = json::stringMember(value, "pattern");
  auto replacement = json::stringMember(value, "replacement");
  if (!uuid || !pattern || !replacement) return std::nullopt;
  return Entry{*uuid, std::move(*pattern), std::move(*replacement)};
}

std::optional<std::vector<Entry>> decodedEntries(std::string_view bytes) {
  const auto value = json::parse(bytes);
  if (!value || !value->is_array()) return std::nullopt;
  std::vector<Entry> entries;
  for (const auto& element : *value) {
    auto entry = decodedEntry(element);
    if (!entry) return std::nullopt;
    entries.push_back(std::move(*entry));
  }
  return entries;
}

std::vector<Entry> sampleEntries() {
  return {{Uuid::random(), "vexor", "VEXOR"}, {Uuid::random(), "vexor energy", "VEXOR ENERGY"}};
}

}  // namespace

ReplacementStore::ReplacementStore(UserDefaults& defaults) : defaults_(defaults) {
  const auto data = defaults_.dataForKey(entriesKey);
  auto stored = data ? decodedEntries(data->bytes) : std::nullopt;
  setEntries(stored ? std::move(*stored) : sampleEntries());
  seedOnce();
}

void ReplacementStore::seedOnce() {
  if (defaults_.boolForKey(seedKey).value_or(false)) return;
  defaults_.set(true, seedKey);
  if (!lookup("ios")) add("ios", "iOS");
}

void ReplacementStore::setEntries(std::vector<Entry> entries) {
  willChange();
  entries_ = std::move(entries);
  save();
  rebuildIndex();
}

void ReplacementStore::add(std::string_view pattern, std::string_view replacement) {
  pattern = text::trimmed(pattern);
  replacement = text::trimmed(replacement);
  if (text::characterCount(pattern) < 2 || replacement.empty()) return;
  auto entries = entries_;
  const auto same = std::ranges::find(entries, normalize(pattern),
                                      [](const Entry& entry) { return normalize(entry.pattern); });
  if (same != entries.end()) {
    same->replacement = replacement;
  } else {
    entries.push_back({Uuid::random(), std::string(pattern), std::string(replacement)});
  }
  setEntries(std::move(entries));
}

void ReplacementStore::remove(const Uuid& id) {
  auto entries = entries_;
  std::erase_if(entries, [&](const Entry& entry) { return entry.id == id; });
  setEntries(std::move(entries));
}

std::optional<std::string> ReplacementStore::lookup(std::string_view text) const {
  const auto found = index_.find(normalize(text));
  return found == index_.end() ? std::nullopt : std::optional(found->second);
}

std::string ReplacementStore::normalize(std::string_view text) {
  const auto lowered = text::lowercased(text);
  std::string normalized;
  for (const auto piece : text::splitAtSpaces(lowered)) {
    if (!normalized.empty()) normalized += ' ';
    normalized += piece;
  }
  return normalized;
}

void ReplacementStore::save() {
  auto array = json::Value::array();
  for (const auto& entry : entries_) {
    array.push_back(
        {{"id", entry.id.text()}, {"pattern", entry.pattern}, {"replacement", entry.replacement}});
  }
  defaults_.set(Data{json::encode(array)}, entriesKey);
}

void ReplacementStore::rebuildIndex() {
  index_.clear();
  maxWords_ = entries_.empty() ? 1 : 0;
  for (const auto& entry : entries_) {
    auto normalized = normalize(entry.pattern);
    maxWords_ = std::max(maxWords_, text::splitAtSpaces(normalized).size());
    index_.insert_or_assign(std::move(normalized), entry.replacement);
  }
}

}  // namespace kivra
