#include "text/text_engines.h"

namespace kivra {

TextEngine& TextEngines::translator() {
  switch (env_.settings.translationEngine()) {
    case EngineKind::appleTranslate:
      return env_.appleTranslate;
    case EngineKind::foundationModel:
      return modelOrDeepL();
    case EngineKind::deepL:
      break;
  }
  return env_.deepL;
}

TextEngine& TextEngines::corrector() { return modelOrDeepL(); }

TextEngine& TextEngines::modelOrDeepL() {
  auto* const model = foundationModelIfAvailable();
  return model != nullptr ? *model : static_cast<TextEngine&>(env_.deepL);
}

TextEngine* TextEngines::deepLFallback() {
  if (env_.settings.translationEngine() == EngineKind::deepL) return nullptr;
  return env_.keychain.read(deepLKeyAccount).value_or("").empty() ? nullptr : &env_.deepL;
}

TextEngine* TextEngines::foundationModelIfAvailable() {
  return env_.languageModel.isAvailable() ? &env_.foundationModel : nullptr;
}

}  // namespace kivra
