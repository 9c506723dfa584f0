#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "bus_client.h"
#include "bus_service.h"

namespace kivra::e2e {

/// A desktop's host of status notifier items, on a session bus: knows the last item that was
/// registered, and opens its menu as a panel does.
class TrayHost {
 public:
  struct MenuEntry {
    int id = 0;
    std::string label;  ///< empty: a separator
    bool isEnabled = true;
  };

  explicit TrayHost(const std::string& address);

  /// Waits for an item; throws std::runtime_error when none comes.
  void waitForItem() const;

  std::string title() const;
  std::vector<MenuEntry> menu() const;

  /// Opens the menu and chooses the entry; throws std::runtime_error when there is none such.
  void choose(const std::string& label) const;

 private:
  static void onCall(GDBusConnection* bus, const char* sender, const char* path,
                     const char* interface, const char* method, GVariant* arguments,
                     GDBusMethodInvocation* invocation, gpointer self);
  static GVariant* onGet(GDBusConnection* bus, const char* sender, const char* path,
                         const char* interface, const char* property, GError** error,
                         gpointer self);
  BusObject item(const char* path) const;

  BusClient client_;
  std::atomic<const char*> owner_ = nullptr;  ///< the item's connection; interned
  BusService service_;
};

}  // namespace kivra::e2e
