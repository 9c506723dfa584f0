#include "platform/session/linux_application.h"

#include <unistd.h>

#include "platform/session/session_client.h"

namespace kivra {

std::int32_t LinuxApplication::processIdentifier() { return ::getpid(); }

std::vector<std::int32_t> LinuxApplication::runningApplications(std::string_view bundleIdentifier) {
  if (bundleIdentifier != identifier) return {};
  const auto self = processIdentifier();
  const auto holder = claim_.holder();
  isSecond_ = holder != self;
  if (!isSecond_) return {self};
  return {holder, self};
}

void LinuxApplication::terminate() {
  // Whoever starts the program a second time wants to see it.
  if (isSecond_) session_client::activate();
  quit_();
}

}  // namespace kivra
