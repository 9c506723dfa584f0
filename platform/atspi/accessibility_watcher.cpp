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

AccessibilityWatcher::AccessibilityWatcher()
    : context_(g_main_context_new()), loop_(g_main_loop_new(context_, FALSE)) {
  thread_ = std::thread([this] { run(); });
  std::unique_lock lock(mutex_);
  answered_.wait_for(lock, firstAnswer, [this] { return hasAnswered_; });
}

AccessibilityWatcher::~AccessibilityWatcher() {
  g_cancellable_cancel(cancellable_);
  g_main_context_invoke(
      context_, [](gpointer loop) { return g_main_loop_quit(static_cast<GMainLoop*>(loop)), 0; },
      loop_);
  thread_.join();
  g_main_loop_unref(loop_);
  g_main_context_unref(context_);
  g_object_unref(cancellable_);
}

void AccessibilityWatcher::requestEnabled() {
  g_main_context_invoke(
      context_,
      [](gpointer self) { return static_cast<AccessibilityWatcher*>(self)->switchOn(), 0; }, this);
}

void AccessibilityWatcher::meetApplications() {
  g_main_context_invoke(
      context_,
      [](gpointer self) {
        return static_cast<AccessibilityWatcher*>(self)->applications_.meet(), 0;
      },
      this);
}

void AccessibilityWatcher::followCaret() {
  g_main_context_invoke(
      context_,
      [](gpointer self) -> gboolean {
        auto& watcher = *static_cast<AccessibilityWatcher*>(self);
        watcher.isCaretFollowed_ = true;
        if (watcher.accessibility_) watcher.listenToCaret();
        return G_SOURCE_REMOVE;
      },
      this);
}

std::optional<AccessibleObject> AccessibilityWatcher::focusedObject() {
  const std::lock_guard lock(mutex_);
  return focused_;
}

void AccessibilityWatcher::run() {
  g_main_context_push_thread_default(context_);
  check();
  g_main_loop_run(loop_);
  stopRetrying();
  applications_.finish();
  applications_.setBus(nullptr);
  accessibility_.reset();
  session_.reset();
  g_main_context_pop_thread_default(context_);
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
  if (retry_ != nullptr) return;
  retry_ = g_timeout_source_new_seconds(retryInterval);
  g_source_set_callback(
      retry_,
      [](gpointer self) -> gboolean {
        static_cast<AccessibilityWatcher*>(self)->check();
        return G_SOURCE_CONTINUE;
      },
      this, nullptr);
  g_source_attach(retry_, context_);
}

void AccessibilityWatcher::stopRetrying() {
  if (retry_ == nullptr) return;
  g_source_destroy(retry_);
  g_source_unref(retry_);
  retry_ = nullptr;
}

void AccessibilityWatcher::setEnabled(bool enabled) {
  if (enabled) {
    stopRetrying();
  } else {
    retry();
  }
  isEnabled = enabled;
  if (!enabled) isPasswordFocused = false;
  const std::lock_guard lock(mutex_);
  hasAnswered_ = true;
  answered_.notify_all();
}

bool AccessibilityWatcher::connect() {
  if (session_ && g_dbus_connection_is_closed(session_.get()) == 0) return true;
  session_ = connectToBus(G_BUS_TYPE_SESSION, cancellable_);
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
  accessibility_ = connectToBus(address, cancellable_);
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
                                                    cancellable_, nullptr));
}

void AccessibilityWatcher::switchOn() {
  if (!connect()) return;
  call(session_.get(), statusName, statusPath, propertiesInterface, "Set",
       g_variant_new("(ssv)", statusInterface, "IsEnabled", g_variant_new_boolean(TRUE)));
  check();
}

void AccessibilityWatcher::focusChanged(const char* sender, const char* path, bool focused) {
  const AccessibleObject object{sender, path};
  {
    const std::lock_guard lock(mutex_);
    if (!focused && object != focused_) return;
    focused_ = focused ? std::optional(object) : std::nullopt;
  }
  mayHaveSelection = false;
  if (!focused) {
    isPasswordFocused = false;
    return;
  }
  const auto reply =
      call(accessibility_.get(), sender, path, accessibleInterface, "GetRole", nullptr);
  guint32 role = 0;
  if (reply) g_variant_get(reply.get(), "(u)", &role);
  isPasswordFocused = role == passwordRole;
}

bool AccessibilityWatcher::isFocused(const char* sender, const char* path) {
  const std::lock_guard lock(mutex_);
  return AccessibleObject{sender, path} == focused_;
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
  auto& watcher = *static_cast<AccessibilityWatcher*>(self);
  if (watcher.isFocused(sender, path)) watcher.mayHaveSelection = true;
}

void AccessibilityWatcher::onCaret(GDBusConnection*, const char* sender, const char* path,
                                   const char*, const char*, GVariant*, gpointer self) {
  auto& watcher = *static_cast<AccessibilityWatcher*>(self);
  if (watcher.isFocused(sender, path)) watcher.lastCaretMove = std::chrono::steady_clock::now();
}

}  // namespace kivra
