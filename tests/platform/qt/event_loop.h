#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <variant>

#include "platform/completion.h"

namespace kivra::qt {

/// Turns the event loop until the condition holds, at most this long; answers whether it does.
bool turnUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds timeout = std::chrono::seconds(20));

/// Calls an operation that ends with a completion, turns the event loop until it has answered, and
/// gives the answer; nothing when none comes.
template <class Result>
std::optional<std::variant<Result, PlatformError>> answerOf(
    const std::function<void(Completion<Result>)>& operation) {
  const auto answer = std::make_shared<std::optional<std::variant<Result, PlatformError>>>();
  operation([answer](auto given) { answer->emplace(std::move(given)); });
  if (answer->has_value()) return std::nullopt;  // answered before the call returned
  turnUntil([&] { return answer->has_value(); });
  return *answer;
}

}  // namespace kivra::qt
