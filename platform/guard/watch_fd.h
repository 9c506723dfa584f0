#pragma once

#include <functional>
#include <memory>

namespace kivra::guard {

/// Calls the function on the main thread whenever the descriptor can be read, for as long as the
/// answer is kept. The run loop that can do so is given to this backend from outside.
using WatchFd = std::function<std::shared_ptr<void>(int fd, std::function<void()> onReadable)>;

}  // namespace kivra::guard
