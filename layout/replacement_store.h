#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "settings/user_defaults.h"
#include "support/observable.h"
#include "support/uuid.h"

namespace kivra {

/// The user's dictionary of replacements: what is typed, and what is wanted instead. Every change
/// is announced to the observers, saved and indexed at once.
class ReplacementStore : public Observable {
 public:
  struct Entry {
    Uuid id;
    std::string pattern;  ///< as entered, trimmed
    std::string replacement;

    bool operator==(const Entry&) const = default;
  };
  using Index = std::unordered_map<std::string, std::string>;

  /// Loads what is stored; stored data that is not a dictionary is replaced by the sample entries.
  explicit ReplacementStore(UserDefaults& defaults);

  const std::vector<Entry>& entries() const { return entries_; }
  void setEntries(std::vector<Entry> entries);

  /// Adds a pair, trimmed, or gives the entry with the same normalized pattern a new replacement. A
  /// pattern of fewer than two characters and an empty replacement are ignored.
  void add(std::string_view pattern, std::string_view replacement);
  void remove(const Uuid& id);

  std::optional<std::string> lookup(std::string_view text) const;

  /// Normalized pattern to replacement. Where stored patterns collide the later entry holds.
  const Index& index() const { return index_; }

  /// The largest number of words of a pattern; 1 without entries.
  std::size_t maxWords() const { return maxWords_; }

  /// Lower case, single spaces.
  static std::string normalize(std::string_view text);

 private:
  void save();
  void rebuildIndex();
  void seedOnce();

  UserDefaults& defaults_;
  std::vector<Entry> entries_;
  Index index_;
  std::size_t maxWords_ = 1;
};

}  // namespace kivra
