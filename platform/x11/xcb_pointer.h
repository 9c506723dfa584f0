#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace kivra::x11 {

struct FreeXcb {
  void operator()(void* reply) const { std::free(reply); }
};

/// A reply or an event of xcb.
template <class T>
using XcbPointer = std::unique_ptr<T, FreeXcb>;

struct DisconnectXcb {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using XcbConnectionPointer = std::unique_ptr<xcb_connection_t, DisconnectXcb>;

}  // namespace kivra::x11
