#pragma once

#include <gio/gio.h>

#include <atomic>
#include <future>
#include <memory>
#include <utility>

#include "platform/atspi/accessible_applications.h"
#include "platform/atspi/accessible_object.h"
#include "platform/atspi/accessible_text.h"
#include "platform/atspi/focused_object.h"
#include "platform/io/bus_connection.h"
#include "platform/io/loop_thread.h"
#include "platform/io/variant_pointer.h"

namespace kivra {

/// The thread that watches the accessibility bus. Everything but the public answers belongs to it.
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

  /// What `read` answers on the thread; its default without a bus.
  template <class Read>
  auto ask(const AccessibleObject& object, AccessibleText::Moment deadline, Read read)
      -> std::future<decltype(read(std::declval<AccessibleText&>()))>;

  std::atomic<bool> isEnabled = false;
  FocusedObject focus;

 private:
  void check();
  void finish();
  bool connect();
  void connectAccessibilityBus();
  VariantPointer call(GDBusConnection* bus, const char* name, const char* path,
                      const char* interface, const char* method, GVariant* arguments);
  void retry();
  void setEnabled(bool enabled);
  void switchOn();
  void listenToCaret();
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

  struct Release {
    void operator()(GCancellable* cancellable) const { g_object_unref(cancellable); }
    void operator()(GSource* source) const {
      g_source_destroy(source);
      g_source_unref(source);
    }
  };

  std::unique_ptr<GCancellable, Release> cancellable_{g_cancellable_new()};
  std::unique_ptr<GSource, Release> retry_;
  bool isCaretFollowed_ = false;
  BusConnection session_;
  BusConnection accessibility_;
  AccessibleApplications applications_{cancellable_.get()};
  LoopThread thread_;
};

template <class Read>
auto AccessibilityWatcher::ask(const AccessibleObject& object, AccessibleText::Moment deadline,
                               Read read)
    -> std::future<decltype(read(std::declval<AccessibleText&>()))> {
  using Answer = decltype(read(std::declval<AccessibleText&>()));
  const auto task =
      std::make_shared<std::packaged_task<Answer()>>([this, object, deadline, read]() -> Answer {
        if (!accessibility_) return {};
        AccessibleText text(accessibility_.get(), object, deadline);
        return read(text);
      });
  auto answer = task->get_future();
  thread_.call([task] { (*task)(); });
  return answer;
}

}  // namespace kivra
