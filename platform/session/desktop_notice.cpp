#include "platform/session/desktop_notice.h"

#include <gio/gio.h>

namespace kivra {

void showDesktopNotice(const std::string& summary, const std::string& body) {
  auto* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  if (bus == nullptr) return;
  g_dbus_connection_set_exit_on_close(bus, FALSE);
  constexpr auto name = "org.freedesktop.Notifications";
  constexpr guint32 none = 0;
  constexpr gint32 asLongAsTheDesktopLikes = -1;
  g_dbus_connection_call(
      bus, name, "/org/freedesktop/Notifications", name, "Notify",
      g_variant_new("(susssasa{sv}i)", "Kivra", none, "app.kivra.Kivra", summary.c_str(),
                    body.c_str(), nullptr, nullptr, asLongAsTheDesktopLikes),
      nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
}

}  // namespace kivra
