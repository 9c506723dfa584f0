#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/embedded/answers.h"
#include "platform/embedded/effects.h"
#include "platform/language_recognizer.h"
#include "platform/translation.h"

namespace kivra::embedded {

/// An offline translator with a fixed answer for each pair of languages; a pair that was not set is
/// unsupported. A pair without a source language stands for every source.
class EmbeddedTranslation : public Translation {
 public:
  struct Pair {
    TranslationStatus status = TranslationStatus::unsupported;
    Answer answer;
    std::optional<std::string> prepareFailure;
  };

  EmbeddedTranslation(Effects& effects, VirtualTime& time, LanguageRecognizer& recognizer)
      : effects_(effects), time_(time), recognizer_(recognizer) {}

  void setPair(const TranslationLanguages& languages, Pair pair);

  void status(TranslationLanguages languages, std::string text,
              Completion<TranslationStatus> completion) override;
  std::shared_ptr<TranslationSession> session(TranslationLanguages languages) override;

 private:
  class Session;
  using Key = std::pair<std::optional<std::string>, std::string>;

  Pair pairFor(const TranslationLanguages& languages, const std::string& text);

  Effects& effects_;
  VirtualTime& time_;
  LanguageRecognizer& recognizer_;
  std::map<Key, Pair> pairs_;
};

}  // namespace kivra::embedded
