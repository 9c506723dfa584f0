#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "layout/replacement_store.h"

namespace kivra::control {

/// How a dictionary of replacements stands in a file.
enum class DictionaryFormat {
  tsv,   ///< pattern, tab, replacement; \t, \n and \\ stand for a tab, a line break, a backslash
  csv,   ///< pattern,replacement; fields in double quotes where they need it
  yaml,  ///< a list of `matches` with `trigger` and `replace`, as text expanders have it
};

/// By the ending of the name: .tsv or .txt, .csv, .yml or .yaml.
std::optional<DictionaryFormat> dictionaryFormat(std::string_view fileName);

/// Something to say of a line of a file, counted from 1.
struct LineNote {
  std::size_t line = 0;
  std::string text;

  bool operator==(const LineNote&) const = default;
};

/// What a file holds.
struct DictionaryText {
  struct Pair {
    std::size_t line = 0;
    std::string pattern;
    std::string replacement;

    bool operator==(const Pair&) const = default;
  };

  std::vector<Pair> pairs;
  std::vector<LineNote> bad;      ///< lines that are no entries and should be
  std::vector<LineNote> leftOut;  ///< entries of a kind that Kivra does not have
};

/// Reads a file. Duplicates, and patterns and replacements that no dictionary can have, are bad.
DictionaryText readDictionary(std::string_view text, DictionaryFormat format);

std::string writtenDictionary(const std::vector<ReplacementStore::Entry>& entries,
                              DictionaryFormat format);

}  // namespace kivra::control
