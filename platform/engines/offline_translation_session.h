#pragma once

#include <memory>
#include <stop_token>
#include <string>

#include "platform/engines/translation_services.h"
#include "platform/translation.h"

namespace kivra {

/// One session of OfflineTranslation. Dropping it ends the program that works for it.
class OfflineTranslationSession : public TranslationSession,
                                  public std::enable_shared_from_this<OfflineTranslationSession> {
 public:
  OfflineTranslationSession(std::weak_ptr<TranslationServices> services,
                            TranslationLanguages languages)
      : services_(std::move(services)), languages_(std::move(languages)) {}
  ~OfflineTranslationSession() override;

  void prepareTranslation(std::string text, Completion<std::monostate> completion) override;
  void translate(std::string text, Completion<std::string> completion) override;

 private:
  void install(const std::string& package, Completion<std::monostate> completion);
  void translateByApertium(const std::string& text, const std::string& mode,
                           Completion<std::string> completion);

  std::weak_ptr<TranslationServices> services_;
  TranslationLanguages languages_;
  std::stop_source stop_{std::nostopstate};
};

}  // namespace kivra
