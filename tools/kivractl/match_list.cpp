#include "match_list.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <utility>

#include "lines.h"
#include "support/text.h"
#include "yaml_scalar.h"

namespace kivra::control {

namespace {

constexpr auto npos = std::string_view::npos;

std::size_t indentOf(std::string_view line) {
  return std::min(line.find_first_not_of(' '), line.size());
}

/// `key: value`, `key:`.
struct Member {
  std::string_view key;
  std::string_view value;
};

std::optional<Member> memberOf(std::string_view text) {
  const auto colon = text.find(':');
  if (colon == npos || (colon + 1 < text.size() && text[colon + 1] != ' ')) return std::nullopt;
  return Member{text.substr(0, colon), text::trimmed(text.substr(colon + 1))};
}

/// An element of the list as far as it has been read.
struct Match {
  std::size_t line = 0;
  std::size_t memberIndent = 0;
  std::map<std::string, std::string, std::less<>> members;
  std::string other;  ///< the key of a member that makes the match one of another kind
};

class MatchReader {
 public:
  DictionaryText read(std::string_view text) {
    for (const auto& line : linesOf(text)) readLine(line);
    finishMatch();
    if (!hasList_) dictionary_.bad.push_back({1, "there is no list of matches"});
    return std::move(dictionary_);
  }

 private:
  void readLine(const Line& line) {
    const auto indent = indentOf(line.text);
    const auto rest = line.text.substr(indent);
    if (rest.empty() || rest.starts_with('#') || rest == "---") return;
    if (!text::isValidUtf8(rest) || rest.starts_with('\t')) {
      dictionary_.bad.push_back({line.number, "not UTF-8 text, or a tab where blanks are wanted"});
    } else if (indent == 0 && !rest.starts_with('-')) {
      beginTopLevel(line);
    } else if (!isInList_) {
      return;
    } else if (rest.starts_with("- ") && (!match_ || indent < match_->memberIndent)) {
      beginMatch(line.number, indent + 2, rest.substr(2));
    } else if (match_ && indent == match_->memberIndent) {
      addMember(line.number, rest);
    } else if (!match_ || indent < match_->memberIndent) {
      dictionary_.bad.push_back({line.number, "does not belong to any match"});
    }
    // What stands further in belongs to a member that is of another kind already.
  }

  void beginTopLevel(const Line& line) {
    finishMatch();
    const auto member = memberOf(line.text);
    isInList_ = member && member->key == "matches";
    hasList_ = hasList_ || isInList_;
    if (!member) {
      dictionary_.bad.push_back({line.number, "wanted: a key and a colon"});
    } else if (!isInList_) {
      dictionary_.leftOut.push_back({line.number, std::string(member->key)});
    }
  }

  void beginMatch(std::size_t line, std::size_t indent, std::string_view rest) {
    finishMatch();
    const auto blanks = indentOf(rest);
    match_ = Match{.line = line, .memberIndent = indent + blanks, .members = {}, .other = {}};
    addMember(line, rest.substr(blanks));
  }

  void addMember(std::size_t line, std::string_view text) {
    const auto member = memberOf(text);
    if (!member) {
      dictionary_.bad.push_back({line, "wanted: a key, a colon and a blank"});
      match_->other = text;
      isBad_ = true;
      return;
    }
    // They change when a match applies, not what it gives.
    constexpr std::array conditions = {"word",  "left_word",      "right_word",
                                       "label", "propagate_case", "search_terms"};
    if (std::ranges::find(conditions, member->key) != conditions.end()) return;
    const auto scalar = yamlScalar(member->value);
    if (member->key != "trigger" && member->key != "replace") {
      match_->other = member->key;
    } else if (scalar && !member->value.empty()) {
      match_->members.emplace(member->key, *scalar);
    } else {
      match_->other = std::string(member->key) + " of another form than a text on its line";
    }
  }

  void finishMatch() {
    if (!match_) return;
    const auto match = *std::exchange(match_, std::nullopt);
    if (std::exchange(isBad_, false)) return;
    const auto trigger = match.members.find("trigger");
    const auto replace = match.members.find("replace");
    if (!match.other.empty()) {
      dictionary_.leftOut.push_back({match.line, "a match with " + match.other});
    } else if (trigger == match.members.end() || replace == match.members.end()) {
      dictionary_.bad.push_back({match.line, "wanted: a trigger and a replace"});
    } else if (replace->second.find("{{") != npos || replace->second.find("$|$") != npos) {
      dictionary_.leftOut.push_back({match.line, "a match with variables in its replace"});
    } else {
      dictionary_.pairs.push_back({match.line, trigger->second, replace->second});
    }
  }

  DictionaryText dictionary_;
  std::optional<Match> match_;
  bool isBad_ = false;  ///< the match under way has been named as bad
  bool isInList_ = false;
  bool hasList_ = false;
};

}  // namespace

DictionaryText readMatches(std::string_view text) { return MatchReader().read(text); }

std::string matchLines(std::string_view pattern, std::string_view replacement) {
  return "  - trigger: " + yamlQuoted(pattern) + "\n    replace: " + yamlQuoted(replacement) + "\n";
}

}  // namespace kivra::control
