#include "bus_client.h"

#include <stdexcept>

namespace kivra::e2e {

namespace {
constexpr int callTimeout = 5000;  // ms
}

BusClient::BusClient(const std::string& address)
    : connection_(g_dbus_connection_new_for_address_sync(
          address.c_str(),
          static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                            G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
          nullptr, nullptr, nullptr)) {
  if (connection_ == nullptr) throw std::runtime_error("no bus at " + address);
}

BusClient::~BusClient() {
  g_dbus_connection_close_sync(connection_, nullptr, nullptr);
  g_object_unref(connection_);
}

Variant BusClient::call(const BusObject& object, const char* interface, const char* method,
                        GVariant* arguments) const {
  return Variant(g_dbus_connection_call_sync(
      connection_, object.name.c_str(), object.path.c_str(), interface, method, arguments, nullptr,
      G_DBUS_CALL_FLAGS_NONE, callTimeout, nullptr, nullptr));
}

Variant BusClient::property(const BusObject& object, const char* interface,
                            const char* property) const {
  const auto reply = call(object, "org.freedesktop.DBus.Properties", "Get",
                          g_variant_new("(ss)", interface, property));
  if (!reply) return nullptr;
  GVariant* value = nullptr;
  g_variant_get(reply.get(), "(v)", &value);
  return Variant(value);
}

}  // namespace kivra::e2e
