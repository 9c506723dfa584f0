#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "platform/answer_of.h"
#include "platform/translation.h"

namespace kivra {

/// What every translator does. `Backend` is default-constructible and has `Translation&
/// translation()`, which translates from English to Spanish and nothing else; `say(text)` and
/// `fail()`, what it does when it is asked; and `turnUntil(condition)`, which turns the run loop.
template <class Backend>
class TranslationContract : public ::testing::Test {
 protected:
  TranslationStatus status(const TranslationLanguages& languages, const std::string& text) {
    const auto answer = awaited<TranslationStatus>([&](auto completion) {
      backend_.translation().status(languages, text, std::move(completion));
    });
    EXPECT_EQ(failureOf(answer), "");
    return std::get<TranslationStatus>(answer);
  }
  std::string prepare(const TranslationLanguages& languages) {
    const auto session = backend_.translation().session(languages);
    return inWords(awaited<std::monostate>(
        [&](auto completion) { session->prepareTranslation("house", std::move(completion)); }));
  }
  std::string translate(const TranslationLanguages& languages) {
    const auto session = backend_.translation().session(languages);
    return inWords(awaited<std::string>(
        [&](auto completion) { session->translate("house", std::move(completion)); }));
  }

  Backend backend_;
  const TranslationLanguages pair_{"en", "es"};
  const TranslationLanguages unknownPair_{"en", "zh-Hans"};

 private:
  template <class Result>
  AnswerOf<Result> awaited(const std::function<void(Completion<Result>)>& operation) {
    return answerOf<Result>([this](const auto& condition) { backend_.turnUntil(condition); },
                            operation);
  }
};
TYPED_TEST_SUITE_P(TranslationContract);

TYPED_TEST_P(TranslationContract, KnowsItsPairsAlsoByTheText) {
  const std::string english = "The house is big and the garden is small.";
  EXPECT_EQ(this->status(this->pair_, ""), TranslationStatus::installed);
  EXPECT_EQ(this->status({std::nullopt, "es"}, english), TranslationStatus::installed);
  EXPECT_EQ(this->status({std::nullopt, "es"}, "12345"), TranslationStatus::unsupported);
  EXPECT_EQ(this->status({"es", "en"}, ""), TranslationStatus::unsupported) << "the other way";
  EXPECT_EQ(this->status(this->unknownPair_, english), TranslationStatus::unsupported);
}

TYPED_TEST_P(TranslationContract, TranslatesWithNothingToPrepare) {
  this->backend_.say("la casa");
  EXPECT_EQ(this->prepare(this->pair_), "done");
  EXPECT_EQ(this->translate(this->pair_), "la casa");
}

TYPED_TEST_P(TranslationContract, FailsWhereThereIsNoTranslation) {
  EXPECT_TRUE(this->prepare(this->unknownPair_).starts_with("failed: "));
  EXPECT_TRUE(this->translate(this->unknownPair_).starts_with("failed: "));
  this->backend_.fail();
  EXPECT_TRUE(this->translate(this->pair_).starts_with("failed: "));
}

REGISTER_TYPED_TEST_SUITE_P(TranslationContract, KnowsItsPairsAlsoByTheText,
                            TranslatesWithNothingToPrepare, FailsWhereThereIsNoTranslation);

}  // namespace kivra
