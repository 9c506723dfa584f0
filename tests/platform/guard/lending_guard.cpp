// Stands where the guard's program does, and lends its end of the socket to the test that has had
// it started.

#include <sys/socket.h>

#include <cstdlib>
#include <cstring>

#include "platform/guard/descriptor_message.h"

int main() {
  constexpr int channelFd = 3;
  const char* const variable = std::getenv("KIVRA_LENDING_FD");
  if (variable == nullptr) return EXIT_FAILURE;
  const int test = std::atoi(variable);
  kivra::guard::DescriptorMessage lent;
  auto& message = lent.message;
  cmsghdr* const header = CMSG_FIRSTHDR(&message);
  header->cmsg_level = SOL_SOCKET;
  header->cmsg_type = SCM_RIGHTS;
  header->cmsg_len = CMSG_LEN(sizeof(int));
  std::memcpy(CMSG_DATA(header), &channelFd, sizeof channelFd);
  return ::sendmsg(test, &message, MSG_NOSIGNAL) == 1 ? EXIT_SUCCESS : EXIT_FAILURE;
}
