#include "platform/io/bus_connection.h"

namespace kivra {

BusConnection connectToBus(GBusType kind, GCancellable* cancellable) {
  char* const address = g_dbus_address_get_for_bus_sync(kind, cancellable, nullptr);
  if (address == nullptr) return nullptr;
  auto bus = connectToBus(address, cancellable);
  g_free(address);
  return bus;
}

BusConnection connectToBus(const char* address, GCancellable* cancellable) {
  return BusConnection(g_dbus_connection_new_for_address_sync(
      address,
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, cancellable, nullptr));
}

}  // namespace kivra
