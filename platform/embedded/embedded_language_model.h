#pragma once

#include <utility>

#include "platform/embedded/answers.h"
#include "platform/embedded/effects.h"
#include "platform/language_model.h"

namespace kivra::embedded {

/// A language model that answers every question alike; there is none to begin with.
class EmbeddedLanguageModel : public LanguageModel {
 public:
  EmbeddedLanguageModel(Effects& effects, VirtualTime& time) : effects_(effects), time_(time) {}

  void set(bool available, Answer answer) {
    isAvailable_ = available;
    answer_ = std::move(answer);
  }

  bool isAvailable() override { return isAvailable_; }
  void respond(LanguageModelRequest request, Completion<std::string> completion) override;

 private:
  Effects& effects_;
  VirtualTime& time_;
  bool isAvailable_ = false;
  Answer answer_;
};

}  // namespace kivra::embedded
