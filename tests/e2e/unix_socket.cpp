#include "unix_socket.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace kivra::e2e {

int connectTo(const std::filesystem::path& socket) {
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  const auto path = socket.string();
  if (path.size() >= sizeof address.sun_path) throw std::runtime_error("path too long: " + path);
  std::ranges::copy(path, address.sun_path);
  const auto fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return fd;
  ::close(fd);
  return -1;
}

bool isServed(const std::filesystem::path& socket) {
  const auto fd = connectTo(socket);
  if (fd < 0) return false;
  ::close(fd);
  return true;
}

}  // namespace kivra::e2e
