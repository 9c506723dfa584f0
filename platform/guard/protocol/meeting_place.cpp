#include "platform/guard/protocol/meeting_place.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>
#include <utility>

namespace kivra::guard {

std::optional<std::filesystem::path> meetingPlace() {
  const auto* const runtime = std::getenv("XDG_RUNTIME_DIR");
  if (runtime == nullptr || *runtime != '/') return std::nullopt;
  return std::filesystem::path(runtime) / "kivra" / "guards";
}

Peer peerOf(int fd) {
  ucred credentials{};
  socklen_t size = sizeof credentials;
  if (::getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) return {};
  std::error_code error;
  const auto process = std::filesystem::path("/proc") / std::to_string(credentials.pid);
  std::string executable = std::filesystem::read_symlink(process / "exe", error);
  constexpr std::string_view deleted = " (deleted)";
  if (executable.ends_with(deleted)) executable.resize(executable.size() - deleted.size());
  return {.isOwnUser = credentials.uid == ::geteuid(), .executable = std::move(executable)};
}

}  // namespace kivra::guard
