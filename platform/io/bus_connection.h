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

}  // namespace kivra
