#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/answer_of.h"
#include "platform/language_model.h"

namespace kivra {

/// What every language model does. `Backend` is default-constructible and has `LanguageModel&
/// model()`; `offer(bool)`, whether there is one; `say(request, text)` and `fail()`, what it does
/// when it is asked; and `turnUntil(condition)`, which turns the run loop.
template <class Backend>
class LanguageModelContract : public ::testing::Test {
 protected:
  std::string ask(const LanguageModelRequest& request) {
    return inWords(answerOf<std::string>(
        [this](const auto& condition) { backend_.turnUntil(condition); },
        [&](auto completion) { backend_.model().respond(request, std::move(completion)); }));
  }

  Backend backend_;
  const LanguageModelRequest plain_{"Translate to EN-US.", "Привет,\n\"мир\"", std::nullopt};
  const LanguageModelRequest structured_{"Fix typos.", "превед",
                                         GenerationSchema{"text", "Text with fixed typos."}};
};
TYPED_TEST_SUITE_P(LanguageModelContract);

TYPED_TEST_P(LanguageModelContract, IsAvailableWhileThereIsOne) {
  for (const auto isThere : {false, true, false}) {
    this->backend_.offer(isThere);
    EXPECT_EQ(this->backend_.model().isAvailable(), isThere);
  }
}

TYPED_TEST_P(LanguageModelContract, AnswersWhatTheModelSays) {
  this->backend_.offer(true);
  ASSERT_TRUE(this->backend_.model().isAvailable());
  for (const auto& request : {this->plain_, this->structured_}) {
    this->backend_.say(request, " Hello,\n\"world\" ");
    EXPECT_EQ(this->ask(request), " Hello,\n\"world\" ");
  }
}

TYPED_TEST_P(LanguageModelContract, FailsWhenTheModelDoes) {
  this->backend_.offer(true);
  ASSERT_TRUE(this->backend_.model().isAvailable());
  this->backend_.fail();
  EXPECT_TRUE(this->ask(this->plain_).starts_with("failed: "));
}

REGISTER_TYPED_TEST_SUITE_P(LanguageModelContract, IsAvailableWhileThereIsOne,
                            AnswersWhatTheModelSays, FailsWhenTheModelDoes);

}  // namespace kivra
