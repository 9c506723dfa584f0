#include "platform/embedded/embedded_language_model.h"

namespace kivra::embedded {

void EmbeddedLanguageModel::respond(LanguageModelRequest request,
                                    Completion<std::string> completion) {
  effects_.report([&] {
    return Json{{"model",
                 {{"instructions", request.instructions},
                  {"prompt", request.prompt},
                  {"schema", request.schema.has_value()}}}};
  });
  answerLater(time_, answer_, std::move(completion));
}

}  // namespace kivra::embedded
