#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

#include "platform/completion.h"

namespace kivra {

template <class Result>
using AnswerOf = std::variant<Result, PlatformError>;

/// Calls an operation that ends with a completion, turns the run loop by `turnUntil(condition)`
/// until it has answered, and gives the answer; a failure where none comes.
template <class Result, class TurnUntil>
AnswerOf<Result> answerOf(const TurnUntil& turnUntil,
                          const std::function<void(Completion<Result>)>& operation) {
  const auto answer = std::make_shared<std::optional<AnswerOf<Result>>>();
  operation([answer](auto given) { answer->emplace(std::move(given)); });
  if (answer->has_value()) return PlatformError("the answer came before the call returned");
  turnUntil([&] { return answer->has_value(); });
  return answer->value_or(PlatformError("the test waited in vain"));
}

/// Why there is no result; empty when there is one.
template <class Result>
std::string failureOf(const AnswerOf<Result>& answer) {
  const auto* error = std::get_if<PlatformError>(&answer);
  return error == nullptr ? "" : error->what();
}

/// The text, "done" for what brings none, or "failed: " and why.
template <class Result>
std::string inWords(const AnswerOf<Result>& answer) {
  if (const auto failure = failureOf(answer); !failure.empty()) return "failed: " + failure;
  if constexpr (std::is_same_v<Result, std::string>) return std::get<std::string>(answer);
  return "done";
}

}  // namespace kivra
