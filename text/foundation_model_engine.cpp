#include "text/foundation_model_engine.h"

#include <utility>

#include "text/text_engine_error.h"

namespace kivra {

namespace {

std::string translationInstructions(const std::string& target) {
  return "You are a translator. Translate the user's text to " + target +
         ". Output ONLY the translation, no comments.";
}

constexpr const char* correctionInstructions =
    "Fix typos, punctuation and comma placement in the user's text. Fix accidental double capitals "
    "(ПРивет → Привет). Do NOT rewrite style, do NOT change the language, do NOT add meaning.";

constexpr const char* correctedProperty = "text";
constexpr const char* correctedGuide =
    "Text with fixed typos, punctuation and commas. Do NOT change meaning, tone or style. Keep the "
    "SAME language as input.";

}  // namespace

Task<std::string> FoundationModelEngine::translate(std::string text, std::string target,
                                                   std::optional<std::string> /*source*/) {
  LanguageModelRequest request{translationInstructions(target), std::move(text), std::nullopt};
  co_return co_await respond(std::move(request));
}

Task<std::string> FoundationModelEngine::correct(std::string text) {
  LanguageModelRequest request{correctionInstructions, std::move(text),
                               GenerationSchema{correctedProperty, correctedGuide}};
  co_return co_await respond(std::move(request));
}

Task<std::string> FoundationModelEngine::respond(LanguageModelRequest request) {
  if (!model_.isAvailable()) throw TextEngineError::notConfigured();
  auto ask = [&](Completion<std::string> completion) {
    model_.respond(std::move(request), std::move(completion));
  };
  co_return co_await completionOf<std::string>(std::move(ask));
}

}  // namespace kivra
