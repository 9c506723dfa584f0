#pragma once

#include <chrono>
#include <functional>

#include "platform/answer_of.h"

namespace kivra::qt {

/// Turns the event loop until the condition holds, at most this long; answers whether it does.
bool turnUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds timeout = std::chrono::seconds(60));

/// The answer of an operation that ends with a completion.
template <class Result>
AnswerOf<Result> answerOf(const std::function<void(Completion<Result>)>& operation) {
  return kivra::answerOf<Result>([](const auto& condition) { turnUntil(condition); }, operation);
}

}  // namespace kivra::qt
