#pragma once

#include <filesystem>

namespace kivra::e2e {

/// A connection to the stream socket of this path, -1 when nobody listens. Throws
/// std::runtime_error for a path that is too long for a socket.
int connectTo(const std::filesystem::path& socket);

/// Something accepts connections there.
bool isServed(const std::filesystem::path& socket);

}  // namespace kivra::e2e
