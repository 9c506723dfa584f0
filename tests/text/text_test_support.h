#pragma once

#include <exception>
#include <memory>
#include <string>

#include "platform/embedded/effects.h"
#include "platform/embedded/virtual_time.h"
#include "support/task.h"

namespace kivra::test {

/// How an engine's operation ended; `ended` is false while it waits.
struct Outcome {
  bool ended = false;
  std::string result;
  std::string failure;
};

inline Task<void> await(Task<std::string> operation, Outcome& outcome) {
  try {
    outcome.result = co_await operation;
  } catch (const std::exception& error) {
    outcome.failure = error.what();
  }
  outcome.ended = true;
}

/// Runs an operation that needs no time.
inline Outcome outcome(Task<std::string> operation) {
  const embedded::Effects::Sink nobody;
  embedded::Effects effects(nobody);
  embedded::VirtualTime time(effects);
  const auto owner = std::make_shared<int>(0);
  Outcome ended;
  startTask(time, owner, await(std::move(operation), ended));
  time.serve();
  return ended;
}

}  // namespace kivra::test
