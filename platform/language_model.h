#pragma once

#include <optional>
#include <string>

#include "platform/completion.h"

namespace kivra {

/// An answer made of one text property.
struct GenerationSchema {
  std::string property;
  std::string guide;  ///< tells the model what the property is to hold
};

/// One question to the model, in a session of its own, with the model's default options.
struct LanguageModelRequest {
  std::string instructions;
  std::string prompt;
  std::optional<GenerationSchema> schema;  ///< nothing: the answer is plain text
};

/// The language model of this machine. No text leaves the machine.
class LanguageModel {
 public:
  virtual ~LanguageModel() = default;

  /// Whether the model can answer now. Keeps the run loop turning if it has to find out, and says
  /// no after 200 ms.
  virtual bool isAvailable() = 0;

  /// The model's answer as it is; with a schema, the value of the property. Fails when the model
  /// does not answer, or not in the form of the schema.
  virtual void respond(LanguageModelRequest request, Completion<std::string> completion) = 0;
};

}  // namespace kivra
