#pragma once

#include <gio/gio.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "platform/atspi/accessible_applications.h"
#include "platform/atspi/accessible_object.h"
#include "platform/atspi/accessible_text.h"
#include "platform/io/bus_connection.h"
#include "platform/io/variant_pointer.h"

namespace kivra {

/// The thread that watches the accessibility bus. Everything but the atomic answers belongs to it.
class AccessibilityWatcher {
 public:
  /// Waits at most half a second for the bus's first answer.
  AccessibilityWatcher();
  ~AccessibilityWatcher();
  AccessibilityWatcher(const AccessibilityWatcher&) = delete;
  AccessibilityWatcher& operator=(const AccessibilityWatcher&) = delete;

  /// See AccessibilityBus.
  void requestEnabled();
  void meetApplications();
  void followCaret();
  std::optional<AccessibleObject> focusedObject();

  /// What `read` answers on the thread; its default without a bus.
  template <class Read>
  auto ask(const AccessibleObject& object, AccessibleText::Moment deadline, Read read)
      -> std::future<decltype(read(std::declval<AccessibleText&>()))>;

  std::atomic<bool> isEnabled = false;
  std::atomic<bool> isPasswordFocused = false;
  std::atomic<bool> mayHaveSelection = false;                          // in the focused object
  std::atomic<std::chrono::steady_clock::time_point> lastCaretMove{};  // likewise

 private:
  void run();
  void check();
  bool connect();
  void connectAccessibilityBus();
  VariantPointer call(GDBusConnection* bus, const char* name, const char* path,
                      const char* interface, const char* method, GVariant* arguments);
  void retry();
  void stopRetrying();
  void setEnabled(bool enabled);
  void switchOn();
  void listenToCaret();
  bool isFocused(const char* sender, const char* path);
  void focusChanged(const char* sender, const char* path, bool focused);

  static void onStatusChange(GDBusConnection* bus, const char* sender, const char* path,
                             const char* interface, const char* signal, GVariant* arguments,
                             gpointer self);
  static void onFocus(GDBusConnection* bus, const char* sender, const char* path,
                      const char* interface, const char* signal, GVariant* arguments,
                      gpointer self);
  static void onRegistryChange(GDBusConnection* bus, const char* sender, const char* path,
                               const char* interface, const char* signal, GVariant* arguments,
                               gpointer self);
  static void onSelection(GDBusConnection* bus, const char* sender, const char* path,
                          const char* interface, const char* signal, GVariant* arguments,
                          gpointer self);
  static void onCaret(GDBusConnection* bus, const char* sender, const char* path,
                      const char* interface, const char* signal, GVariant* arguments,
                      gpointer self);
  void listen(const char* signal, const char* detail, GDBusSignalCallback callback,
              const char* event);

  GMainContext* context_;
  GMainLoop* loop_;
  GCancellable* cancellable_ = g_cancellable_new();
  GSource* retry_ = nullptr;
  bool isCaretFollowed_ = false;
  BusConnection session_;
  BusConnection accessibility_;
  AccessibleApplications applications_{cancellable_};
  std::mutex mutex_;
  std::optional<AccessibleObject> focused_;
  std::condition_variable answered_;
  bool hasAnswered_ = false;
  std::thread thread_;
};

template <class Read>
auto AccessibilityWatcher::ask(const AccessibleObject& object, AccessibleText::Moment deadline,
                               Read read)
    -> std::future<decltype(read(std::declval<AccessibleText&>()))> {
  using Answer = decltype(read(std::declval<AccessibleText&>()));
  using Task = std::packaged_task<Answer()>;
  auto task = std::make_unique<Task>([this, object, deadline, read]() -> Answer {
    if (!accessibility_) return {};
    AccessibleText text(accessibility_.get(), object, deadline);
    return read(text);
  });
  auto answer = task->get_future();
  g_main_context_invoke_full(
      context_, G_PRIORITY_DEFAULT,
      [](gpointer called) -> gboolean {
        (*static_cast<Task*>(called))();
        return G_SOURCE_REMOVE;
      },
      task.release(), [](gpointer dropped) { delete static_cast<Task*>(dropped); });
  return answer;
}

}  // namespace kivra
