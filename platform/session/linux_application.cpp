#include "platform/session/linux_application.h"

#include <unistd.h>

namespace kivra {

std::int32_t LinuxApplication::processIdentifier() { return ::getpid(); }

std::vector<std::int32_t> LinuxApplication::runningApplications(std::string_view bundleIdentifier) {
  if (bundleIdentifier != identifier) return {};
  const auto self = processIdentifier();
  const auto holder = claim_.holder();
  if (holder == self) return {self};
  return {holder, self};
}

}  // namespace kivra
