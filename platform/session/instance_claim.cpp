#include "platform/session/instance_claim.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/io/variant_pointer.h"

namespace kivra {

namespace {

constexpr int busTimeout = 2000;   // ms
constexpr guint32 doNotQueue = 4;  // DBUS_NAME_FLAG_DO_NOT_QUEUE
constexpr guint32 nameExists = 3;  // DBUS_REQUEST_NAME_REPLY_EXISTS

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

}  // namespace

pid_t InstanceClaim::holder() {
  if (!holder_) holder_ = holderOnBus();
  if (!holder_) holder_ = holderOfLock();
  if (!holder_) holder_ = ::getpid();
  return *holder_;
}

std::optional<pid_t> InstanceClaim::holderOnBus() const {
  // Never closed: the name is held for as long as the connection lives.
  auto* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  if (bus == nullptr) return std::nullopt;
  g_dbus_connection_set_exit_on_close(bus, FALSE);
  const auto answer =
      askBus(bus, "RequestName", g_variant_new("(su)", name_.c_str(), guint32{doNotQueue}));
  if (!answer) return std::nullopt;
  if (*answer != nameExists) return ::getpid();
  const auto process =
      askBus(bus, "GetConnectionUnixProcessID", g_variant_new("(s)", name_.c_str()));
  if (!process) return std::nullopt;
  return static_cast<pid_t>(*process);
}

std::optional<pid_t> InstanceClaim::holderOfLock() {
  const auto* const directory = std::getenv("XDG_RUNTIME_DIR");
  if (directory == nullptr) return std::nullopt;
  const auto path = std::string(directory) + "/" + name_ + ".lock";
  // Never closed: the lock lasts until then.
  const auto file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (file < 0) return std::nullopt;
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  if (::fcntl(file, F_SETLK, &lock) == 0) return ::getpid();
  if (::fcntl(file, F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return std::nullopt;
  return lock.l_pid;
}

}  // namespace kivra
