#include "platform/session/desktop_notifications.h"

#include <utility>

#include "platform/io/bus_connection.h"
#include "platform/io/thread_context.h"
#include "platform/io/variant_pointer.h"

namespace kivra {

namespace {

constexpr auto service = "org.freedesktop.Notifications";
constexpr auto servicePath = "/org/freedesktop/Notifications";
constexpr auto buttonAction = "button";
constexpr int answerTimeout = 5000;  // ms
constexpr int asTheServerLikes = -1;

/// Servers that know markup would take the text's own characters for it.
std::string escaped(const std::string& text) {
  char* const markup = g_markup_escape_text(text.c_str(), static_cast<gssize>(text.size()));
  std::string result(markup);
  g_free(markup);
  return result;
}

}  // namespace

/// The server of notifications; belongs to the worker's thread.
class DesktopNotifications::Server {
 public:
  /// Shows the notification; one with a button is waited for. Answers whether the button was
  /// pressed before another notification, or the user, took its place.
  bool show(const Notification& notification, const std::stop_token& stop) {
    if (bus_ && g_dbus_connection_is_closed(bus_.get()) != 0) bus_.reset();
    if (!bus_) bus_ = connectToBus(G_BUS_TYPE_SESSION);
    if (!bus_) return false;
    const auto context = newThreadContext();
    const auto subscription = g_dbus_connection_signal_subscribe(
        bus_.get(), service, service, nullptr, servicePath, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
        onSignal, this, nullptr);
    const auto isPressed =
        notify(notification) && !notification.button.empty() && waitForButton(context.get(), stop);
    g_dbus_connection_signal_unsubscribe(bus_.get(), subscription);
    return isPressed;
  }

 private:
  bool notify(const Notification& notification) {
    GVariantBuilder actions;
    g_variant_builder_init(&actions, G_VARIANT_TYPE("as"));
    if (!notification.button.empty()) {
      g_variant_builder_add(&actions, "s", buttonAction);
      g_variant_builder_add(&actions, "s", notification.button.c_str());
    }
    GVariantBuilder hints;
    g_variant_builder_init(&hints, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&hints, "{sv}", "desktop-entry", g_variant_new_string("app.kivra.Kivra"));
    const VariantPointer reply(g_dbus_connection_call_sync(
        bus_.get(), service, servicePath, service, "Notify",
        g_variant_new("(susssasa{sv}i)", "Kivra", shown_, "app.kivra.Kivra",
                      notification.title.c_str(), escaped(notification.text).c_str(), &actions,
                      &hints, asTheServerLikes),
        G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, answerTimeout, nullptr, nullptr));
    if (!reply) return false;
    g_variant_get(reply.get(), "(u)", &shown_);
    return true;
  }

  bool waitForButton(GMainContext* context, const std::stop_token& stop) {
    isOver_ = false;
    isPressed_ = false;
    const std::stop_callback onStop(stop, [context] { g_main_context_wakeup(context); });
    while (!isOver_ && !stop.stop_requested()) g_main_context_iteration(context, TRUE);
    return isPressed_;
  }

  static void onSignal(GDBusConnection*, const char*, const char*, const char*, const char* name,
                       GVariant* arguments, gpointer self) {
    static_cast<Server*>(self)->signal(name, arguments);
  }

  void signal(const std::string& name, GVariant* arguments) {
    guint32 id = 0;
    const char* action = "";
    if (name == "ActionInvoked" && g_variant_is_of_type(arguments, G_VARIANT_TYPE("(us)")) != 0) {
      g_variant_get(arguments, "(u&s)", &id, &action);
    } else if (name == "NotificationClosed" &&
               g_variant_is_of_type(arguments, G_VARIANT_TYPE("(uu)")) != 0) {
      g_variant_get(arguments, "(uu)", &id, nullptr);
    } else {
      return;
    }
    if (id != shown_) return;
    isOver_ = true;
    isPressed_ = action == std::string(buttonAction);
  }

  BusConnection bus_;
  guint32 shown_ = 0;  ///< the number of the last notification, whose place the next one takes
  bool isOver_ = false;
  bool isPressed_ = false;
};

DesktopNotifications::DesktopNotifications(CallOnMainThread callOnMainThread)
    : server_(std::make_shared<Server>()), worker_(std::move(callOnMainThread)) {}

void DesktopNotifications::show(Notification notification) {
  shown_.request_stop();
  auto action = notification.action;
  shown_ = worker_.run<bool>(
      [server = server_, notification = std::move(notification)](const std::stop_token& stop) {
        return server->show(notification, stop);
      },
      [action = std::move(action)](bool isPressed) {
        if (isPressed && action) action();
      });
}

}  // namespace kivra
