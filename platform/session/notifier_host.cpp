#include "platform/session/notifier_host.h"

#include <gio/gio.h>

#include "platform/io/variant_pointer.h"

namespace kivra {

bool hasNotifierHost() {
  constexpr int answerWait = 500;  // ms
  auto* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  if (bus == nullptr) return false;
  g_dbus_connection_set_exit_on_close(bus, FALSE);
  constexpr auto name = "org.kde.StatusNotifierWatcher";
  const VariantPointer reply(g_dbus_connection_call_sync(
      bus, name, "/StatusNotifierWatcher", "org.freedesktop.DBus.Properties", "Get",
      g_variant_new("(ss)", name, "IsStatusNotifierHostRegistered"), G_VARIANT_TYPE("(v)"),
      G_DBUS_CALL_FLAGS_NO_AUTO_START, answerWait, nullptr, nullptr));
  if (!reply) return false;
  GVariant* value = nullptr;
  g_variant_get(reply.get(), "(v)", &value);
  const VariantPointer owned(value);
  return g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) != 0 &&
         g_variant_get_boolean(value) != 0;
}

}  // namespace kivra
