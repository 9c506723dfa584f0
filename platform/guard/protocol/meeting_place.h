#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace kivra::guard {

/// Where the program listens for a guard that the desktop has started: a socket in the user's
/// runtime folder (XDG_RUNTIME_DIR); nothing without one. The folder of the socket is the user's
/// alone.
std::optional<std::filesystem::path> meetingPlace();

/// Who is at the other end of a connected socket.
struct Peer {
  bool isOwnUser = false;
  /// Its path, or where it was before an upgrade; empty where the system does not tell.
  std::string executable{};
};
Peer peerOf(int fd);

}  // namespace kivra::guard
