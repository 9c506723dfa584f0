#pragma once

#include "platform/language_recognizer.h"

namespace kivra {

/// CLD2, which was made for web pages, with rules for texts of a few words: scripts and letters of
/// one language decide before it, and the commonest little words beside it.
class Cld2LanguageRecognizer : public LanguageRecognizer {
 public:
  std::optional<std::string> dominantLanguage(std::string_view text) override;
};

}  // namespace kivra
