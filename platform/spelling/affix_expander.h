#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kivra {

/// The word forms that a hunspell dictionary (its .aff rules and .dic stems) stands for, one after
/// another. Understood: suffixes and prefixes with their cross products, suffixes on suffixes,
/// flags of all four kinds and their aliases, and the marks for forms that may not stand alone, may
/// not be suggested or are forbidden. Compounds are left to hunspell.
class AffixExpander {
 public:
  /// Reads the rules from the text of an .aff file in UTF-8. Lines that make no sense are skipped.
  explicit AffixExpander(std::string_view affText);

  /// Calls `form` with each form of the dictionary text (a .dic file in UTF-8), some repeatedly.
  /// A form that is forbidden comes with `allowed` false.
  void expand(std::string_view dicText,
              const std::function<void(std::u32string_view form, bool allowed)>& form) const;

 private:
  using Flag = char32_t;
  using Flags = std::u32string;
  enum class FlagKind { oneByte, utf8, pair, number };

  struct Condition {
    bool negated = false;
    std::u32string letters;  // empty: any letter
  };

  struct Rule {
    std::u32string strip;
    std::u32string affix;
    Flags continuation;
    std::vector<Condition> conditions;
  };

  struct RuleSet {
    bool isPrefix = false;
    bool crosses = false;
    std::vector<Rule> rules;
  };

  struct Output;

  void readLine(std::string_view line);
  void readRule(const std::vector<std::string_view>& fields, bool isPrefix);
  [[nodiscard]] Flags readFlags(std::string_view text) const;
  [[nodiscard]] static std::vector<Condition> readConditions(std::string_view text);
  [[nodiscard]] static bool applies(const Rule& rule, std::u32string_view stem, bool isPrefix);
  [[nodiscard]] bool has(const Flags& flags, Flag flag) const;
  void expandEntry(std::string_view line, Output& out) const;
  void emit(std::u32string_view form, const Flags& flags, Output& out) const;
  void addSuffixes(std::u32string_view stem, const Flags& flags, const Flags& prefixes, int depth,
                   Output& out) const;
  void addPrefixes(std::u32string_view stem, const Flags& own, const Flags& prefixes,
                   bool onlyCrossing, Output& out) const;

  std::unordered_map<Flag, RuleSet> sets_;
  std::vector<Flags> aliases_;
  FlagKind flagKind_ = FlagKind::oneByte;
  bool aliasesCounted_ = false;
  Flag needAffix_ = 0;
  Flag forbidden_ = 0;
  Flag noSuggest_ = 0;
  Flag onlyInCompound_ = 0;
};

}  // namespace kivra
