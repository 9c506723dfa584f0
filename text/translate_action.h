#pragma once

#include <string>

#include "platform/language_recognizer.h"
#include "platform/locale.h"
#include "text/text_action.h"

namespace kivra {

/// Translates the selected text, or the whole field, in its place. A text that is in the requested
/// language already goes into the user's own language instead.
class TranslateAction : public TextAction {
 public:
  TranslateAction(const Environment& environment, LanguageRecognizer& recognizer, Locale& locale)
      : TextAction(environment), recognizer_(recognizer), locale_(locale) {}

  /// Starts a translation into the language of this code ("EN-US") and returns; ignored while one
  /// runs.
  void run(const std::string& target);

  /// The code of the language to translate into when `requested` was asked for.
  std::string resolveTarget(const std::string& text, const std::string& requested);

 private:
  Task<void> translateSelection(std::string requested, Running running);
  Task<std::string> translateWithFallback(std::string text, std::string target);

  LanguageRecognizer& recognizer_;
  Locale& locale_;
};

}  // namespace kivra
