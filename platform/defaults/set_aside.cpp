#include "platform/defaults/set_aside.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <string>

namespace kivra {

namespace {

constexpr std::array companions = {"-wal", "-shm", "-journal"};

std::string utcTime() {
  const auto now = std::time(nullptr);
  std::tm parts = {};
  gmtime_r(&now, &parts);
  std::array<char, 32> text = {};
  const auto size = std::strftime(text.data(), text.size(), "%Y%m%dT%H%M%SZ", &parts);
  return {text.data(), size};
}

bool exists(const std::string& path) {
  struct stat found = {};
  return lstat(path.c_str(), &found) == 0;
}

bool renameToFreeName(const std::string& from, const std::string& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  // Some file systems do not know the flag.
  return errno == EINVAL && !exists(to) && std::rename(from.c_str(), to.c_str()) == 0;
}

bool isFree(const std::string& name) {
  if (exists(name)) return false;
  for (const auto* companion : companions) {
    if (exists(name + companion)) return false;
  }
  return true;
}

}  // namespace

std::optional<std::filesystem::path> setAside(const std::filesystem::path& path) {
  const auto& name = path.native();
  const auto stem = name + ".damaged-" + utcTime();
  auto target = stem;
  for (int number = 2; !isFree(target); ++number) target = stem + '-' + std::to_string(number);
  // The companions first: SQLite deletes those that it finds next to a new file.
  for (const auto* companion : companions) renameToFreeName(name + companion, target + companion);
  if (!renameToFreeName(name, target)) return std::nullopt;
  return target;
}

}  // namespace kivra
