#include "platform/session/instance_claim.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <string_view>

#include "platform/io/variant_pointer.h"

namespace kivra {

namespace {

constexpr int busTimeout = 2000;   // ms
constexpr guint32 doNotQueue = 4;  // DBUS_NAME_FLAG_DO_NOT_QUEUE
constexpr guint32 nameExists = 3;  // DBUS_REQUEST_NAME_REPLY_EXISTS
constexpr pid_t unknownProcess = 0;

/// Calls the bus itself with the arguments, which it takes; the number answered, if any.
std::optional<guint32> askBus(GDBusConnection* bus, const char* method, GVariant* arguments) {
  const VariantPointer reply(g_dbus_connection_call_sync(
      bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
      arguments, G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, busTimeout, nullptr, nullptr));
  if (!reply) return std::nullopt;
  guint32 number = 0;
  g_variant_get(reply.get(), "(u)", &number);
  return number;
}

struct flock wholeFile() {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return lock;
}

std::optional<pid_t> otherHolder(int file) {
  auto lock = wholeFile();
  if (::fcntl(file, F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return std::nullopt;
  return lock.l_pid;
}

}  // namespace

pid_t InstanceClaim::holder() {
  if (!holder_) holder_ = findHolder();
  return *holder_;
}

// Both are taken: where the bus fails half-way, or after one instance has its name, the lock still
// keeps the other out; without a runtime directory the name does.
pid_t InstanceClaim::findHolder() const {
  const auto ofLock = holderOfLock();
  if (ofLock && *ofLock != ::getpid()) return *ofLock;
  return holderOnBus().value_or(::getpid());
}

std::optional<pid_t> InstanceClaim::holderOnBus() const {
  // Never closed: the name is held for as long as the connection lives.
  auto* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  if (bus == nullptr) return std::nullopt;
  g_dbus_connection_set_exit_on_close(bus, FALSE);
  // The one that has it may end before it is asked for, which leaves the name to be had.
  for (int tries = 0; tries < 3; ++tries) {
    const auto answer =
        askBus(bus, "RequestName", g_variant_new("(su)", name_.c_str(), guint32{doNotQueue}));
    if (!answer) return std::nullopt;
    if (*answer != nameExists) return ::getpid();
    const auto process =
        askBus(bus, "GetConnectionUnixProcessID", g_variant_new("(s)", name_.c_str()));
    if (process) return static_cast<pid_t>(*process);
  }
  return unknownProcess;
}

std::optional<pid_t> InstanceClaim::holderOfLock() const {
  const auto path = lockPath();
  if (path.empty()) return std::nullopt;
  // Never closed: the lock lasts until then.
  const auto file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (file < 0) return std::nullopt;
  auto lock = wholeFile();
  if (::fcntl(file, F_SETLK, &lock) == 0) return ::getpid();
  return otherHolder(file);
}

std::optional<pid_t> InstanceClaim::lockHolder() const {
  const auto file = ::open(lockPath().c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
  if (file < 0) return std::nullopt;
  const auto holder = otherHolder(file);
  ::close(file);
  return holder;
}

// A user may have two sessions with a bus each and one runtime directory for both.
std::string InstanceClaim::lockPath() const {
  const auto* const directory = std::getenv("XDG_RUNTIME_DIR");
  if (directory == nullptr) return "";
  const auto* const bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  const auto session =
      bus == nullptr ? "" : "-" + std::to_string(std::hash<std::string_view>()(bus));
  return std::string(directory) + "/" + name_ + session + ".lock";
}

}  // namespace kivra
