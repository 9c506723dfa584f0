#pragma once

#include <functional>
#include <variant>

#include "platform/platform_error.h"

namespace kivra {

/// How an asynchronous service answers: called exactly once, on the main thread, from the run loop,
/// never before the call that took it has returned. A service that ends before it has an answer
/// destroys the completion without calling it.
template <class Result>
using Completion = std::function<void(std::variant<Result, PlatformError>)>;

}  // namespace kivra
