#include "platform/session/layout_keepers.h"

#include <gio/gio.h>

#include <utility>

#include "platform/io/bus_connection.h"

namespace kivra {

namespace {

struct Keeper {
  const char* name;
  const char* path;
  const char* interface;
  const char* method;  // takes the number of the group
};

constexpr Keeper keepers[] = {
    // Remembers a layout for each window, but not one that another program has locked.
    {.name = "ru.gentoo.KbddService",
     .path = "/ru/gentoo/KbddService",
     .interface = "ru.gentoo.kbdd",
     .method = "set_layout"},
    // Kivra's extension of GNOME Shell, which undoes the lock of another program.
    {.name = "kivra.InputSource",
     .path = "/kivra/InputSource",
     .interface = "kivra.InputSource",
     .method = "SelectGroup"},
};

}  // namespace

/// The connection; belongs to the worker's thread.
class LayoutKeepers::Bus {
 public:
  void tell(std::uint32_t group, const std::stop_token& stop) {
    if (!connect(stop)) return;
    for (const auto& keeper : keepers) {
      auto* const message =
          g_dbus_message_new_method_call(keeper.name, keeper.path, keeper.interface, keeper.method);
      // The bus drops what is meant for a name that nobody owns.
      g_dbus_message_set_flags(
          message, static_cast<GDBusMessageFlags>(G_DBUS_MESSAGE_FLAGS_NO_REPLY_EXPECTED |
                                                  G_DBUS_MESSAGE_FLAGS_NO_AUTO_START));
      g_dbus_message_set_body(message, g_variant_new("(u)", group));
      g_dbus_connection_send_message(connection_.get(), message, G_DBUS_SEND_MESSAGE_FLAGS_NONE,
                                     nullptr, nullptr);
      g_object_unref(message);
    }
  }

 private:
  bool connect(const std::stop_token& stop) {
    if (connection_ && g_dbus_connection_is_closed(connection_.get()) != 0) connection_.reset();
    if (connection_) return true;
    auto* const cancellable = g_cancellable_new();
    const std::stop_callback onStop(stop, [cancellable] { g_cancellable_cancel(cancellable); });
    connection_ = connectToBus(G_BUS_TYPE_SESSION, cancellable);
    g_object_unref(cancellable);
    return connection_ != nullptr;
  }

  BusConnection connection_;
};

LayoutKeepers::LayoutKeepers(CallOnMainThread callOnMainThread)
    : bus_(std::make_shared<Bus>()), worker_(std::move(callOnMainThread)) {}

void LayoutKeepers::selectGroup(std::uint32_t group) {
  worker_.run<bool>(
      [bus = bus_, group](const std::stop_token& stop) {
        bus->tell(group, stop);
        return true;
      },
      [](bool) {});
}

}  // namespace kivra
