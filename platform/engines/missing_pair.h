#pragma once

#include <string>

#include "platform/translation.h"

namespace kivra {

/// What to say where no translator of this machine has the languages and no package brings them.
struct MissingPair {
  std::string summary;
  std::string remedy;  ///< what to install for it that needs no cloud, in commands
};

/// For two languages that are known.
MissingPair missingPair(const TranslationLanguages& languages);

}  // namespace kivra
