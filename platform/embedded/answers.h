#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "platform/completion.h"
#include "platform/embedded/virtual_time.h"

namespace kivra::embedded {

/// How a service is to answer.
struct Answer {
  std::optional<std::string> reply;
  std::optional<std::string> failure;  ///< goes before the reply
  std::chrono::microseconds delay{0};
};

/// Calls the completion once the delay has passed; with neither a reply nor a failure, "no reply".
inline void answerLater(VirtualTime& time, Answer answer, Completion<std::string> completion) {
  const auto delay = answer.delay;
  time.asyncAfter(delay, [answer = std::move(answer), completion = std::move(completion)] {
    if (answer.reply && !answer.failure) {
      completion(*answer.reply);
    } else {
      completion(PlatformError(answer.failure.value_or("no reply")));
    }
  });
}

}  // namespace kivra::embedded
