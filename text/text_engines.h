#pragma once

#include "platform/language_model.h"
#include "settings/settings_store.h"
#include "text/apple_translate_engine.h"
#include "text/deepl_engine.h"
#include "text/foundation_model_engine.h"
#include "text/keychain_store.h"

namespace kivra {

/// Chooses the engine that serves a request.
class TextEngines {
 public:
  struct Environment {
    const SettingsStore& settings;
    KeychainStore& keychain;
    LanguageModel& languageModel;
    AppleTranslateEngine& appleTranslate;
    FoundationModelEngine& foundationModel;
    DeepLEngine& deepL;
  };

  explicit TextEngines(const Environment& environment) : env_(environment) {}

  /// For translating, as the user chose; DeepL stands in for a model that is not available.
  TextEngine& translator();

  /// For correcting: the model of this machine when it is available, else DeepL.
  TextEngine& corrector();

  /// A second chance for a failed translation; null when the user's choice is DeepL anyway or there
  /// is no key.
  TextEngine* deepLFallback();

  /// Null when the model of this machine cannot answer now.
  TextEngine* foundationModelIfAvailable();

 private:
  TextEngine& modelOrDeepL();

  Environment env_;
};

}  // namespace kivra
