#pragma once

#include <string>
#include <variant>

#include "platform/translation.h"

namespace kivra {

/// Ways to translate a text.
struct ByLibreTranslate {
  TranslationLanguages pair;  ///< in the server's codes
};
struct ByApertium {
  std::string mode;
};
struct ByMissingPackage {
  std::string package;
};

/// How a text can be translated; monostate: not at all.
using TranslationRoute =
    std::variant<std::monostate, ByLibreTranslate, ByApertium, ByMissingPackage>;

}  // namespace kivra
