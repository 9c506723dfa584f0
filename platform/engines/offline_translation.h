#pragma once

#include <memory>

#include "platform/engines/translation_services.h"
#include "platform/translation.h"

namespace kivra {

/// Translation by the translators that people have on Linux: Apertium with the pairs that are
/// installed, those of the package lists after their installation, and a LibreTranslate server on
/// this machine.
class OfflineTranslation : public Translation {
 public:
  OfflineTranslation(HttpClient& http, LanguageRecognizer& recognizer,
                     CallOnMainThread callOnMainThread)
      : OfflineTranslation(http, recognizer, std::move(callOnMainThread),
                           TranslationServices::Options{}) {}
  OfflineTranslation(HttpClient& http, LanguageRecognizer& recognizer,
                     CallOnMainThread callOnMainThread,
                     const TranslationServices::Options& options);

  void status(TranslationLanguages languages, std::string text,
              Completion<TranslationStatus> completion) override;
  std::shared_ptr<TranslationSession> session(TranslationLanguages languages) override;

 private:
  std::shared_ptr<TranslationServices> services_;
};

}  // namespace kivra
