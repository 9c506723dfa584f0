#include "platform/linux/linux_application.h"

#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace kivra {

namespace {

namespace fs = std::filesystem;

std::string programName(const fs::path& process) {
  std::error_code error;
  auto name = fs::read_symlink(process / "exe", error).filename().string();
  // So the kernel shows a program that has been replaced while it ran.
  constexpr std::string_view deleted = " (deleted)";
  if (name.ends_with(deleted)) name.resize(name.size() - deleted.size());
  return error ? "" : name;
}

/// What tells the login session of a process from others: its display and its runtime directory.
std::string loginSession(const fs::path& process) {
  std::ifstream file(process / "environ", std::ios::binary);
  std::string screen;
  std::string directory;
  for (std::string entry; std::getline(file, entry, '\0');) {
    if (entry.starts_with("DISPLAY=")) screen = entry;
    if (entry.starts_with("XDG_RUNTIME_DIR=")) directory = entry;
  }
  return screen + '\n' + directory;
}

bool isMine(const fs::path& process) {
  struct stat status {};
  return ::stat(process.c_str(), &status) == 0 && status.st_uid == ::getuid();
}

}  // namespace

std::int32_t LinuxApplication::processIdentifier() { return ::getpid(); }

std::vector<std::int32_t> LinuxApplication::runningApplications(std::string_view bundleIdentifier) {
  std::vector<std::int32_t> running;
  if (bundleIdentifier != identifier) return running;
  const fs::path self = "/proc/self";
  const auto ownName = programName(self);
  const auto ownSession = loginSession(self);
  std::error_code error;
  for (const auto& entry : fs::directory_iterator("/proc", error)) {
    const auto name = entry.path().filename().string();
    std::int32_t process = 0;
    const auto parsed = std::from_chars(name.data(), name.data() + name.size(), process);
    if (parsed.ec != std::errc() || parsed.ptr != name.data() + name.size()) continue;
    if (isMine(entry.path()) && programName(entry.path()) == ownName &&
        loginSession(entry.path()) == ownSession) {
      running.push_back(process);
    }
  }
  return running;
}

}  // namespace kivra
