#include "platform/atspi/accessibility_watcher.h"

#include <chrono>
#include <string>

namespace kivra {

namespace {

constexpr auto statusName = "org.a11y.Bus";
constexpr auto statusPath = "/org/a11y/bus";
constexpr auto statusInterface = "org.a11y.Status";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr auto objectEvents = "org.a11y.atspi.Event.Object";

constexpr int watchTimeout = 2000;  // ms; only the watching thread waits
constexpr auto firstAnswer = std::chrono::milliseconds(500);
constexpr guint retryInterval = 1;  // s

}  // namespace

AccessibilityWatcher::AccessibilityWatcher() : thread_([this] { check(); }, [this] { finish(); }) {
  thread_.begun().wait_for(firstAnswer);
}

AccessibilityWatcher::~AccessibilityWatcher() { g_cancellable_cancel(cancellable_.get()); }

void AccessibilityWatcher::requestEnabled() {
  thread_.call([this] { switchOn(); });
}

void AccessibilityWatcher::meetApplications() {
  thread_.call([this] { applications_.meet(); });
}

void AccessibilityWatcher::followCaret() {
  thread_.call([this] {
    isCaretFollowed_ = true;
    if (accessibility_) listenToCaret();
  });
}

void AccessibilityWatcher::finish() {
  retry_.reset();
  applications_.finish();
  applications_.setBus(nullptr);
  accessibility_.reset();
  session_.reset();
}

void AccessibilityWatcher::check() {
  bool enabled = false;
  if (connect()) {
    const auto reply = call(session_.get(), statusName, statusPath, propertiesInterface, "Get",
                            g_variant_new("(ss)", statusInterface, "IsEnabled"));
    GVariant* value = nullptr;
    if (reply) g_variant_get(reply.get(), "(v)", &value);
    const VariantPointer owned(value);
    enabled = value != nullptr && g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) &&
              g_variant_get_boolean(value) != 0;
    if (enabled && !accessibility_) connectAccessibilityBus();
  }
  setEnabled(enabled && accessibility_ != nullptr);
}

// Until accessibility is on, and should the session bus come later than the program.
void AccessibilityWatcher::retry() {
  if (retry_) return;
  retry_.reset(g_timeout_source_new_seconds(retryInterval));
  g_source_set_callback(
      retry_.get(),
      [](gpointer self) -> gboolean {
        static_cast<AccessibilityWatcher*>(self)->check();
        return G_SOURCE_CONTINUE;
      },
      this, nullptr);
  g_source_attach(retry_.get(), g_main_context_get_thread_default());
}

void AccessibilityWatcher::setEnabled(bool enabled) {
  isEnabled = enabled;
  if (enabled) {
    retry_.reset();
  } else {
    focus.isPassword = false;
    retry();
  }
}

bool AccessibilityWatcher::connect() {
  if (session_ && g_dbus_connection_is_closed(session_.get()) == 0) return true;
  session_ = connectToBus(G_BUS_TYPE_SESSION, cancellable_.get());
  if (!session_) return false;
  g_dbus_connection_signal_subscribe(session_.get(), statusName, propertiesInterface,
                                     "PropertiesChanged", statusPath, statusInterface,
                                     G_DBUS_SIGNAL_FLAGS_NONE, onStatusChange, this, nullptr);
  return true;
}

void AccessibilityWatcher::connectAccessibilityBus() {
  const auto reply =
      call(session_.get(), statusName, statusPath, "org.a11y.Bus", "GetAddress", nullptr);
  if (!reply) return;
  const char* address = nullptr;
  g_variant_get(reply.get(), "(&s)", &address);
  accessibility_ = connectToBus(address, cancellable_.get());
  if (!accessibility_) return;
  listen("StateChanged", "focused", onFocus, "object:state-changed:focused");
  listen("TextSelectionChanged", nullptr, onSelection, "object:text-selection-changed");
  if (isCaretFollowed_) listenToCaret();
  g_dbus_connection_signal_subscribe(accessibility_.get(), accessibleRegistry, objectEvents,
                                     "ChildrenChanged", accessibleRoot, nullptr,
                                     G_DBUS_SIGNAL_FLAGS_NONE, onRegistryChange, this, nullptr);
  applications_.setBus(accessibility_.get());
  applications_.meet();
}

void AccessibilityWatcher::listen(const char* signal, const char* detail,
                                  GDBusSignalCallback callback, const char* event) {
  g_dbus_connection_signal_subscribe(accessibility_.get(), nullptr, objectEvents, signal, nullptr,
                                     detail, G_DBUS_SIGNAL_FLAGS_NONE, callback, this, nullptr);
  call(accessibility_.get(), accessibleRegistry, "/org/a11y/atspi/registry", accessibleRegistry,
       "RegisterEvent", g_variant_new("(s)", event));
}

VariantPointer AccessibilityWatcher::call(GDBusConnection* bus, const char* name, const char* path,
                                          const char* interface, const char* method,
                                          GVariant* arguments) {
  return VariantPointer(g_dbus_connection_call_sync(bus, name, path, interface, method, arguments,
                                                    nullptr, G_DBUS_CALL_FLAGS_NONE, watchTimeout,
                                                    cancellable_.get(), nullptr));
}

void AccessibilityWatcher::switchOn() {
  if (!connect()) return;
  call(session_.get(), statusName, statusPath, propertiesInterface, "Set",
       g_variant_new("(ssv)", statusInterface, "IsEnabled", g_variant_new_boolean(TRUE)));
  check();
}

void AccessibilityWatcher::focusChanged(const char* sender, const char* path, bool focused) {
  if (!focused) {
    focus.lost({sender, path});
    return;
  }
  focus.gained({sender, path});
  const auto reply =
      call(accessibility_.get(), sender, path, accessibleInterface, "GetRole", nullptr);
  guint32 role = 0;
  if (reply) g_variant_get(reply.get(), "(u)", &role);
  focus.isPassword = role == passwordRole;
}

void AccessibilityWatcher::listenToCaret() {
  listen("TextCaretMoved", nullptr, onCaret, "object:text-caret-moved");
}

void AccessibilityWatcher::onStatusChange(GDBusConnection*, const char*, const char*, const char*,
                                          const char*, GVariant*, gpointer self) {
  static_cast<AccessibilityWatcher*>(self)->check();
}

void AccessibilityWatcher::onFocus(GDBusConnection*, const char* sender, const char* path,
                                   const char*, const char*, GVariant* arguments, gpointer self) {
  gint32 focused = 0;
  const VariantPointer value(g_variant_get_child_value(arguments, 1));
  if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_INT32)) {
    focused = g_variant_get_int32(value.get());
  }
  static_cast<AccessibilityWatcher*>(self)->focusChanged(sender, path, focused != 0);
}

void AccessibilityWatcher::onRegistryChange(GDBusConnection*, const char*, const char*, const char*,
                                            const char*, GVariant*, gpointer self) {
  static_cast<AccessibilityWatcher*>(self)->applications_.meet();
}

void AccessibilityWatcher::onSelection(GDBusConnection*, const char* sender, const char* path,
                                       const char*, const char*, GVariant*, gpointer self) {
  auto& focus = static_cast<AccessibilityWatcher*>(self)->focus;
  if (focus.get() == AccessibleObject{sender, path}) focus.mayHaveSelection = true;
}

void AccessibilityWatcher::onCaret(GDBusConnection*, const char* sender, const char* path,
                                   const char*, const char*, GVariant*, gpointer self) {
  auto& focus = static_cast<AccessibilityWatcher*>(self)->focus;
  if (focus.get() == AccessibleObject{sender, path}) {
    focus.lastCaretMove = std::chrono::steady_clock::now();
  }
}

}  // namespace kivra
