#include "bus_service.h"

namespace kivra::e2e {

BusService::BusService(const BusClient& client, const BusObject& object, const char* description,
                       const GDBusInterfaceVTable& table, void* self)
    : thread_([&] {
        auto* const node = g_dbus_node_info_new_for_xml(description, nullptr);
        g_dbus_connection_register_object(client.connection(), object.path.c_str(),
                                          node->interfaces[0], &table, self, nullptr, nullptr);
        g_dbus_node_info_unref(node);
      }) {
  thread_.begun().wait();
  client.call({"org.freedesktop.DBus", "/org/freedesktop/DBus"}, "org.freedesktop.DBus",
              "RequestName", g_variant_new("(su)", object.name.c_str(), 0U));
}

}  // namespace kivra::e2e
