#pragma once

#include <gio/gio.h>

#include <memory>

namespace kivra {

struct CloseBusConnection {
  void operator()(GDBusConnection* bus) const {
    g_dbus_connection_close_sync(bus, nullptr, nullptr);
    g_object_unref(bus);
  }
};

/// Owns a connection that nobody else uses.
using BusConnection = std::unique_ptr<GDBusConnection, CloseBusConnection>;

/// A new connection to the bus of this kind; null where there is none, and once `cancellable`,
/// which may be null, is cancelled.
BusConnection connectToBus(GBusType kind, GCancellable* cancellable = nullptr);
/// The same to the bus at an address.
BusConnection connectToBus(const char* address, GCancellable* cancellable);

}  // namespace kivra
