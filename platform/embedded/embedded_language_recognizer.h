#pragma once

#include "platform/language_recognizer.h"

namespace kivra::embedded {

/// A real recogniser, where one was given; else one that never tells.
class EmbeddedLanguageRecognizer : public LanguageRecognizer {
 public:
  /// `real` may be null, else it must outlive this object.
  explicit EmbeddedLanguageRecognizer(LanguageRecognizer* real) : real_(real) {}

  std::optional<std::string> dominantLanguage(std::string_view text) override {
    return real_ == nullptr ? std::nullopt : real_->dominantLanguage(text);
  }

 private:
  LanguageRecognizer* real_;
};

}  // namespace kivra::embedded
