#include "platform/spelling/affix_expander.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "platform/spelling/letter_code.h"

namespace kivra {
namespace {

// Rules that lead from suffix to suffix in a circle must end somewhere; hunspell itself goes two
// deep.
constexpr int suffixDepth = 2;

std::vector<std::string_view> fieldsOf(std::string_view line) {
  std::vector<std::string_view> fields;
  std::size_t pos = 0;
  while (true) {
    pos = line.find_first_not_of(" \t\r", pos);
    if (pos == std::string_view::npos) return fields;
    const std::size_t end = std::min(line.find_first_of(" \t\r", pos), line.size());
    fields.push_back(line.substr(pos, end - pos));
    pos = end;
  }
}

template <typename Callback>
void forEachLine(std::string_view text, Callback&& callback) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    callback(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

std::size_t numberOf(std::string_view text) {
  std::size_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

}  // namespace

struct AffixExpander::Output {
  const std::function<void(std::u32string_view, bool)>& form;
};

AffixExpander::AffixExpander(std::string_view affText) {
  // The kind of flags may be named after the first flags were used, so it is looked for first.
  forEachLine(affText, [this](std::string_view line) {
    const auto fields = fieldsOf(line);
    if (fields.size() < 2 || fields[0] != "FLAG") return;
    if (fields[1] == "long") flagKind_ = FlagKind::pair;
    if (fields[1] == "num") flagKind_ = FlagKind::number;
    if (fields[1] == "UTF-8") flagKind_ = FlagKind::utf8;
  });
  forEachLine(affText, [this](std::string_view line) { readLine(line); });
}

void AffixExpander::readLine(std::string_view line) {
  const auto fields = fieldsOf(line);
  if (fields.size() < 2) return;
  const std::string_view key = fields[0];
  const auto firstFlag = [this, &fields] {
    const Flags flags = readFlags(fields[1]);
    return flags.empty() ? Flag{0} : flags.front();
  };
  if (key == "SFX" || key == "PFX") {
    readRule(fields, key == "PFX");
  } else if (key == "AF") {
    // The first AF line holds the number of aliases that follow.
    if (aliasesCounted_) aliases_.push_back(readFlags(fields[1]));
    aliasesCounted_ = true;
  } else if (key == "NEEDAFFIX" || key == "PSEUDOROOT") {
    needAffix_ = firstFlag();
  } else if (key == "FORBIDDENWORD") {
    forbidden_ = firstFlag();
  } else if (key == "NOSUGGEST") {
    noSuggest_ = firstFlag();
  } else if (key == "ONLYINCOMPOUND") {
    onlyInCompound_ = firstFlag();
  }
}

void AffixExpander::readRule(const std::vector<std::string_view>& fields, bool isPrefix) {
  if (fields.size() < 4) return;
  const Flags flags = readFlags(fields[1]);
  if (flags.empty()) return;
  const auto found = sets_.find(flags.front());
  if (found == sets_.end()) {
    sets_[flags.front()] = {isPrefix, fields[2] == "Y", {}};
    return;
  }
  Rule rule;
  if (fields[2] != "0") rule.strip = decodeUtf8(fields[2]);
  const std::size_t slash = fields[3].find('/');
  const std::string_view affix = fields[3].substr(0, slash);
  if (affix != "0") rule.affix = decodeUtf8(affix);
  if (slash != std::string_view::npos) {
    const std::string_view text = fields[3].substr(slash + 1);
    const std::size_t alias = numberOf(text);
    const bool aliased = !aliases_.empty() && alias >= 1 && alias <= aliases_.size();
    rule.continuation = aliased ? aliases_[alias - 1] : readFlags(text);
  }
  if (fields.size() > 4) rule.conditions = readConditions(fields[4]);
  found->second.rules.push_back(std::move(rule));
}

AffixExpander::Flags AffixExpander::readFlags(std::string_view text) const {
  Flags flags;
  switch (flagKind_) {
    case FlagKind::utf8:
    case FlagKind::oneByte:
      return decodeUtf8(text);
    case FlagKind::pair: {
      const std::u32string scalars = decodeUtf8(text);
      for (std::size_t i = 0; i + 1 < scalars.size(); i += 2) {
        flags.push_back((scalars[i] << 16U) | scalars[i + 1]);
      }
      return flags;
    }
    case FlagKind::number:
      break;
  }
  while (!text.empty()) {
    const std::size_t comma = std::min(text.find(','), text.size());
    flags.push_back(static_cast<Flag>(numberOf(text.substr(0, comma))));
    text.remove_prefix(std::min(comma + 1, text.size()));
  }
  return flags;
}

std::vector<AffixExpander::Condition> AffixExpander::readConditions(std::string_view text) {
  std::vector<Condition> conditions;
  const std::u32string scalars = decodeUtf8(text);
  for (std::size_t i = 0; i < scalars.size(); ++i) {
    Condition condition;
    if (scalars[i] == U'[') {
      ++i;
      if (i < scalars.size() && scalars[i] == U'^') {
        condition.negated = true;
        ++i;
      }
      while (i < scalars.size() && scalars[i] != U']') condition.letters.push_back(scalars[i++]);
    } else if (scalars[i] != U'.') {
      condition.letters.push_back(scalars[i]);
    }
    conditions.push_back(std::move(condition));
  }
  // A lone dot asks for nothing, not even for a letter.
  if (text == ".") conditions.clear();
  return conditions;
}

bool AffixExpander::applies(const Rule& rule, std::u32string_view stem, bool isPrefix) {
  const std::size_t width = rule.conditions.size();
  if (stem.size() < width || stem.size() < rule.strip.size()) return false;
  // A stem of exactly the stripped letters would leave only the affix.
  if (stem.size() == rule.strip.size()) return false;
  const bool strips = isPrefix ? stem.starts_with(rule.strip) : stem.ends_with(rule.strip);
  if (!strips) return false;
  const std::size_t start = isPrefix ? 0 : stem.size() - width;
  for (std::size_t i = 0; i < width; ++i) {
    const Condition& condition = rule.conditions[i];
    if (condition.letters.empty()) continue;
    const bool among = condition.letters.find(stem[start + i]) != std::u32string::npos;
    if (among == condition.negated) return false;
  }
  return true;
}

bool AffixExpander::has(const Flags& flags, Flag flag) const {
  return flag != 0 && flags.find(flag) != Flags::npos;
}

void AffixExpander::expand(std::string_view dicText,
                           const std::function<void(std::u32string_view, bool)>& form) const {
  Output out{form};
  bool first = true;
  forEachLine(dicText, [&](std::string_view line) {
    // The first line is the number of entries.
    if (!first && !line.empty()) expandEntry(line, out);
    first = false;
  });
}

void AffixExpander::expandEntry(std::string_view line, Output& out) const {
  // Morphological fields follow after white space; "\/" is a slash of the word itself, and no word
  // of letters has one.
  line = line.substr(0, std::min(line.find_first_of("\t\r "), line.size()));
  const std::size_t slash = line.find('/');
  const std::u32string stem = decodeUtf8(line.substr(0, slash));
  if (stem.empty()) return;
  Flags flags;
  if (slash != std::string_view::npos) {
    const std::string_view text = line.substr(slash + 1);
    const std::size_t alias = numberOf(text);
    const bool aliased = !aliases_.empty() && alias >= 1 && alias <= aliases_.size();
    flags = aliased ? aliases_[alias - 1] : readFlags(text);
  }
  if (has(flags, forbidden_)) {
    out.form(stem, false);
    return;
  }
  if (has(flags, noSuggest_) || has(flags, onlyInCompound_)) return;
  emit(stem, flags, out);
  addSuffixes(stem, flags, flags, suffixDepth, out);
  addPrefixes(stem, flags, flags, false, out);
}

void AffixExpander::emit(std::u32string_view form, const Flags& flags, Output& out) const {
  if (!has(flags, needAffix_) && !has(flags, onlyInCompound_)) out.form(form, true);
}

void AffixExpander::addSuffixes(std::u32string_view stem, const Flags& flags, const Flags& prefixes,
                                int depth, Output& out) const {
  for (const Flag flag : flags) {
    const auto set = sets_.find(flag);
    if (set == sets_.end() || set->second.isPrefix) continue;
    for (const Rule& rule : set->second.rules) {
      if (!applies(rule, stem, false)) continue;
      std::u32string form(stem.substr(0, stem.size() - rule.strip.size()));
      form += rule.affix;
      emit(form, rule.continuation, out);
      if (depth > 1 && !rule.continuation.empty()) {
        addSuffixes(form, rule.continuation, prefixes, depth - 1, out);
      }
      if (set->second.crosses) addPrefixes(form, rule.continuation, prefixes, true, out);
      addPrefixes(form, rule.continuation, rule.continuation, false, out);
    }
  }
}

void AffixExpander::addPrefixes(std::u32string_view stem, const Flags& own, const Flags& prefixes,
                                bool onlyCrossing, Output& out) const {
  for (const Flag flag : prefixes) {
    const auto set = sets_.find(flag);
    if (set == sets_.end() || !set->second.isPrefix) continue;
    if (onlyCrossing && !set->second.crosses) continue;
    for (const Rule& rule : set->second.rules) {
      if (!applies(rule, stem, true)) continue;
      std::u32string form = rule.affix;
      form += stem.substr(rule.strip.size());
      // A mark that the stem needs an affix is satisfied by this one.
      emit(form, has(own, onlyInCompound_) ? own : rule.continuation, out);
    }
  }
}

}  // namespace kivra
