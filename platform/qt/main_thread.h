#pragma once

#include <functional>

namespace kivra::qt {

/// Calls the block on the main thread, from the event loop. May be called on any thread; a block
/// that the loop does not reach before the program ends is dropped.
void callOnMainThread(std::function<void()> block);

}  // namespace kivra::qt
