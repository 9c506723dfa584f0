#include "platform/guard/process/program_finder.h"

#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <iostream>
#include <stdexcept>

#include "platform/guard/protocol/meeting_place.h"

namespace kivra::guard {

namespace {

int connectTo(const std::filesystem::path& place) {
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  const auto& name = place.native();
  if (name.size() >= sizeof address.sun_path) return -1;
  std::memcpy(address.sun_path, name.data(), name.size());
  // A program that admits nobody must not keep the keys waiting.
  const int fd = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return fd;
  ::close(fd);
  return -1;
}

}  // namespace

ProgramFinder::ProgramFinder(const std::filesystem::path& place, std::string program)
    : place_(place),
      program_(std::move(program)),
      watch_(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
  const auto folder = place.parent_path();
  ::mkdir(folder.c_str(), S_IRWXU);
  if (::inotify_add_watch(watch_, folder.c_str(), IN_MOVED_TO | IN_ONLYDIR) >= 0) return;
  ::close(watch_);
  throw std::runtime_error("за папкой " + folder.string() + " нельзя следить");
}

ProgramFinder::~ProgramFinder() { ::close(watch_); }

int ProgramFinder::find() {
  std::array<std::byte, 4096> news;
  while (::read(watch_, news.data(), news.size()) > 0) isDue_ = true;
  if (!std::exchange(isDue_, false)) return -1;
  const int fd = connectTo(place_);
  if (fd < 0) return -1;
  const auto peer = peerOf(fd);
  if (peer.isOwnUser && peer.executable == program_) return fd;
  ::close(fd);
  std::cerr << "Kivra: вместо Kivra клавиатуру слушает другая программа, ей ничего не сказано: "
            << (peer.executable.empty() ? "неизвестно какая" : peer.executable) << '\n';
  return -1;
}

}  // namespace kivra::guard
