// What KWin starts: the guard, with a socket to the test, which listens where the environment says.

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

int main() {
  constexpr int channelFd = 3;
  const char* const path = std::getenv("KIVRA_GUARDS");
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  if (path == nullptr || std::strlen(path) >= sizeof address.sun_path) return EXIT_FAILURE;
  std::memcpy(address.sun_path, path, std::strlen(path));
  const int test = ::socket(AF_UNIX, SOCK_SEQPACKET, 0);
  if (::connect(test, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    return EXIT_FAILURE;
  }
  // KWin may have put the connection to itself there.
  const char* const display = std::getenv("WAYLAND_SOCKET");
  if (display != nullptr && std::atoi(display) == channelFd) {
    ::setenv("WAYLAND_SOCKET", std::to_string(::dup(channelFd)).c_str(), 1);
  }
  if (test != channelFd) {
    ::dup2(test, channelFd);
    ::close(test);
  }
  ::execl(KIVRA_GUARD, KIVRA_GUARD, nullptr);
  return EXIT_FAILURE;
}
