#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "platform/engines/apertium.h"
#include "platform/engines/libre_translate.h"
#include "platform/engines/translation_route.h"
#include "platform/io/background_worker.h"
#include "platform/language_recognizer.h"

namespace kivra {

/// The translators of this machine, asked together. Belongs to the main thread; answers there, from
/// the run loop.
class TranslationServices : public std::enable_shared_from_this<TranslationServices> {
 public:
  struct Options {
    Apertium::Programs programs{};
    std::uint16_t libreTranslatePort = 5000;
    std::chrono::milliseconds libreTranslateWait{1000};
    /// Called when nothing here translates between two languages and no package would.
    std::function<void(const TranslationLanguages&)> pairIsMissing = [](const auto&) {};
  };

  TranslationServices(HttpClient& http, LanguageRecognizer& recognizer,
                      CallOnMainThread callOnMainThread, const Options& options);

  /// A LibreTranslate server that has the pair comes first: it translates whole sentences.
  void findRoute(TranslationLanguages languages, const std::string& text,
                 std::function<void(TranslationRoute)> done);

  /// Answers nothing when Apertium fails.
  std::stop_source translateByApertium(const std::string& text, const std::string& mode,
                                       std::function<void(std::optional<std::string>)> done);

  /// Answers why it failed.
  std::stop_source install(const std::string& package,
                           std::function<void(std::optional<std::string>)> done);

  LibreTranslate& libreTranslate() { return libreTranslate_; }

 private:
  LanguageRecognizer& recognizer_;
  std::function<void(const TranslationLanguages&)> pairIsMissing_;
  Apertium apertium_;
  LibreTranslate libreTranslate_;
  BackgroundWorker worker_;
  BackgroundWorker installer_;
};

}  // namespace kivra
