// Stands where the guard's program does, and lends its end of the socket to the test that has had
// it started, at a socket of the name in the environment: a guard inherits nothing else.

#include <sys/socket.h>
#include <sys/un.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "platform/guard/descriptor_message.h"

int main() {
  constexpr int channelFd = 3;
  const char* const name = std::getenv("KIVRA_LENDING_NAME");
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  if (name == nullptr || std::strlen(name) + 1 > sizeof address.sun_path) return EXIT_FAILURE;
  std::memcpy(&address.sun_path[1], name, std::strlen(name));
  kivra::guard::DescriptorMessage lent;
  auto& message = lent.message;
  message.msg_name = &address;
  message.msg_namelen =
      static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + std::strlen(name));
  cmsghdr* const header = CMSG_FIRSTHDR(&message);
  header->cmsg_level = SOL_SOCKET;
  header->cmsg_type = SCM_RIGHTS;
  header->cmsg_len = CMSG_LEN(sizeof(int));
  std::memcpy(CMSG_DATA(header), &channelFd, sizeof channelFd);
  const int test = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  return ::sendmsg(test, &message, MSG_NOSIGNAL) == 1 ? EXIT_SUCCESS : EXIT_FAILURE;
}
