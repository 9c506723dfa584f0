#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kivra {

/// An installed hunspell dictionary: its name ("ru_RU") and its two files.
struct DictionaryFiles {
  std::string name;
  std::filesystem::path aff;
  std::filesystem::path dic;

  bool operator==(const DictionaryFiles&) const = default;
};

/// The texts of a dictionary's files in UTF-8, and the encoding in which hunspell will read them.
struct DictionaryText {
  std::string aff;
  std::string dic;
  std::string encoding;
};

/// The dictionaries for a language code ("ru") in `directories`, most wanted first: directories in
/// their order, in each the name equal to the code, then ru_RU or en_US, then the others by name.
std::vector<DictionaryFiles> findDictionaries(const std::vector<std::filesystem::path>& directories,
                                              std::string_view code);

/// Reads and checks a dictionary; nothing when a file is missing, empty, cut short, in an unknown
/// encoding or not in the encoding that it names. Hunspell must not see such files.
std::optional<DictionaryText> readDictionary(const DictionaryFiles& files);

/// The whole of a file, or nothing when it cannot be read.
std::optional<std::string> readWholeFile(const std::filesystem::path& file);

/// Text in another encoding, or nothing when it cannot be had in it.
std::optional<std::string> convertEncoding(std::string_view text, const std::string& from,
                                           const std::string& to);

}  // namespace kivra
