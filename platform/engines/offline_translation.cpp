#include "platform/engines/offline_translation.h"

#include <utility>

#include "platform/engines/offline_translation_session.h"

namespace kivra {

namespace {

TranslationStatus statusOf(const TranslationRoute& route) {
  if (std::holds_alternative<std::monostate>(route)) return TranslationStatus::unsupported;
  return std::holds_alternative<ByMissingPackage>(route) ? TranslationStatus::supported
                                                         : TranslationStatus::installed;
}

}  // namespace

OfflineTranslation::OfflineTranslation(HttpClient& http, LanguageRecognizer& recognizer,
                                       CallOnMainThread callOnMainThread,
                                       const TranslationServices::Options& options)
    : services_(std::make_shared<TranslationServices>(http, recognizer, std::move(callOnMainThread),
                                                      options)) {}

void OfflineTranslation::status(TranslationLanguages languages, std::string text,
                                Completion<TranslationStatus> completion) {
  services_->findRoute(
      std::move(languages), text,
      [called = std::move(completion)](const TranslationRoute& route) { called(statusOf(route)); });
}

std::shared_ptr<TranslationSession> OfflineTranslation::session(TranslationLanguages languages) {
  return std::make_shared<OfflineTranslationSession>(services_, std::move(languages));
}

}  // namespace kivra
