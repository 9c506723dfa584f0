#pragma once

#include <string>

#include "platform/language_model.h"
#include "text/text_engine.h"

namespace kivra {

/// The language model of this machine. Fails with `notConfigured` when the model is not available
/// at the time of the call.
class FoundationModelEngine : public TextEngine {
 public:
  explicit FoundationModelEngine(LanguageModel& model) : model_(model) {}

  /// The source language is left to the model.
  Task<std::string> translate(std::string text, std::string target,
                              std::optional<std::string> source) override;
  Task<std::string> correct(std::string text) override;

 private:
  Task<std::string> respond(LanguageModelRequest request);

  LanguageModel& model_;
};

}  // namespace kivra
