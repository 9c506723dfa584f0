#pragma once

#include <string>
#include <vector>

namespace kivra {

/// The user's language settings.
class Locale {
 public:
  virtual ~Locale() = default;

  /// Identifiers of the languages that the user prefers ("ru-RU"), the first one most; may be
  /// empty.
  virtual std::vector<std::string> preferredLanguages() = 0;
};

}  // namespace kivra
