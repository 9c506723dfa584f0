#include "remote_keyboard.h"

#include <linux/input-event-codes.h>

#include <cstdlib>
#include <stdexcept>

namespace kivra::e2e {

namespace {

constexpr auto name = "org.gnome.Mutter.RemoteDesktop";
constexpr auto sessionInterface = "org.gnome.Mutter.RemoteDesktop.Session";

}  // namespace

RemoteKeyboard::RemoteKeyboard() : bus_(std::getenv("DBUS_SESSION_BUS_ADDRESS")) {
  const auto made = bus_.call({name, "/org/gnome/Mutter/RemoteDesktop"}, name, "CreateSession");
  if (!made) throw std::runtime_error("no remote desktop");
  const char* path = nullptr;
  g_variant_get(made.get(), "(&o)", &path);
  session_ = path;
  if (!bus_.call({name, session_}, sessionInterface, "Start")) {
    throw std::runtime_error("the remote desktop does not start");
  }
  // The shell makes a keyboard when the first key comes.
  for (const auto isDown : {true, false}) {
    bus_.call({name, session_}, sessionInterface, "NotifyKeyboardKeycode",
              g_variant_new("(ub)", KEY_RIGHTSHIFT, static_cast<gboolean>(isDown)));
  }
}

void RemoteKeyboard::key(std::uint16_t evdev, bool isDown) {
  auto* const message = g_dbus_message_new_method_call(name, session_.c_str(), sessionInterface,
                                                       "NotifyKeyboardKeycode");
  g_dbus_message_set_flags(message, G_DBUS_MESSAGE_FLAGS_NO_REPLY_EXPECTED);
  g_dbus_message_set_body(message, g_variant_new("(ub)", guint{evdev}, gboolean{isDown}));
  g_dbus_connection_send_message(bus_.connection(), message, G_DBUS_SEND_MESSAGE_FLAGS_NONE,
                                 nullptr, nullptr);
  g_object_unref(message);
}

}  // namespace kivra::e2e
