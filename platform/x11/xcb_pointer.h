#pragma once

#include <cstdlib>
#include <memory>

namespace kivra::x11 {

struct FreeXcb {
  void operator()(void* reply) const { std::free(reply); }
};

/// A reply or an event of xcb.
template <class T>
using XcbPointer = std::unique_ptr<T, FreeXcb>;

}  // namespace kivra::x11
