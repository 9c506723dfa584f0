#include "platform/guard/guard_door.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "platform/guard/protocol/meeting_place.h"

namespace kivra::guard {

namespace {

constexpr int mostWaiting = 8;

/// Makes the folder, or finds it; false when others may look into it.
bool isOwnFolder(const std::filesystem::path& folder) {
  ::mkdir(folder.c_str(), S_IRWXU);
  struct stat found {};
  return ::lstat(folder.c_str(), &found) == 0 && S_ISDIR(found.st_mode) &&
         found.st_uid == ::geteuid() && (found.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

/// Listens before the socket has its name: a guard that sees the name comes at once.
bool listenAt(int fd, const std::filesystem::path& place) {
  const auto unnamed = place.string() + ".new";
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  if (unnamed.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, unnamed.data(), unnamed.size());
  ::unlink(unnamed.c_str());
  return ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
         ::listen(fd, mostWaiting) == 0 && ::rename(unnamed.c_str(), place.c_str()) == 0;
}

}  // namespace

GuardDoor::~GuardDoor() {
  if (fd_ < 0) return;
  ::close(fd_);
  ::unlink(place_->c_str());
}

bool GuardDoor::open() {
  if (fd_ >= 0) return true;
  if (!place_ || !isOwnFolder(place_->parent_path())) return false;
  const int fd = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (!listenAt(fd, *place_)) {
    ::close(fd);
    return false;
  }
  fd_ = fd;
  return true;
}

int GuardDoor::admit() const {
  for (;;) {
    const int fd = ::accept4(fd_, nullptr, nullptr, SOCK_CLOEXEC);
    if (fd < 0 || isGuard(fd)) return fd;
    ::close(fd);
  }
}

bool GuardDoor::isGuard(int fd) const {
  const auto peer = peerOf(fd);
  if (peer.isOwnUser && peer.executable == guard_) return true;
  log_.log("Kivra: вместо сторожа клавиатуры пришла другая программа, ей отказано: " +
           (peer.executable.empty() ? "неизвестно какая" : peer.executable));
  return false;
}

}  // namespace kivra::guard
