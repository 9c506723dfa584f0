#include "notification_server.h"

#include <chrono>

namespace kivra::e2e {

namespace {

constexpr auto interfaceName = "org.freedesktop.Notifications";
constexpr auto objectPath = "/org/freedesktop/Notifications";
constexpr auto description = R"(<node><interface name="org.freedesktop.Notifications">
<method name="Notify"><arg type="s" direction="in"/><arg type="u" direction="in"/>
<arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="as" direction="in"/><arg type="a{sv}" direction="in"/><arg type="i" direction="in"/>
<arg type="u" direction="out"/></method></interface></node>)";

}  // namespace

NotificationServer::NotificationServer(const std::string& address)
    : client_(address),
      service_(client_, {interfaceName, objectPath}, description, {onCall, nullptr, nullptr, {}},
               this) {}

void NotificationServer::onCall(GDBusConnection* /*bus*/, const char* /*sender*/,
                                const char* /*path*/, const char* /*interface*/,
                                const char* /*method*/, GVariant* arguments,
                                GDBusMethodInvocation* invocation, gpointer self) {
  const auto number = static_cast<NotificationServer*>(self)->add(arguments);
  g_dbus_method_invocation_return_value(invocation, g_variant_new("(u)", number));
}

std::uint32_t NotificationServer::add(GVariant* notification) {
  Shown shown;
  const char* title = nullptr;
  const char* text = nullptr;
  GVariantIter* buttons = nullptr;
  g_variant_get(notification, "(&su&s&s&sas@a{sv}i)", nullptr, &shown.replaced, nullptr, &title,
                &text, &buttons, nullptr, nullptr);
  shown.title = title;
  shown.text = text;
  const char* button = nullptr;
  while (g_variant_iter_next(buttons, "&s", &button) != FALSE) shown.buttons.emplace_back(button);
  g_variant_iter_free(buttons);
  const std::lock_guard lock(mutex_);
  shown_.push_back(shown);
  changed_.notify_all();
  return static_cast<std::uint32_t>(shown_.size());
}

std::vector<NotificationServer::Shown> NotificationServer::waitFor(std::size_t count) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, std::chrono::seconds(10), [&] { return shown_.size() >= count; });
  return shown_;
}

void NotificationServer::pressButton() {
  const auto shown = waitFor(1);
  emit("ActionInvoked", g_variant_new("(us)", static_cast<std::uint32_t>(shown.size()),
                                      shown.back().buttons.at(0).c_str()));
}

void NotificationServer::close() {
  constexpr std::uint32_t byTheUser = 2;
  emit("NotificationClosed",
       g_variant_new("(uu)", static_cast<std::uint32_t>(waitFor(1).size()), byTheUser));
}

void NotificationServer::emit(const char* signal, GVariant* arguments) {
  g_dbus_connection_emit_signal(client_.connection(), nullptr, objectPath, interfaceName, signal,
                                arguments, nullptr);
}

}  // namespace kivra::e2e
