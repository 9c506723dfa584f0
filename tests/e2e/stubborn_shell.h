#pragma once

#include <X11/Xlib.h>

#include <atomic>
#include <optional>
#include <string>

#include "bus_client.h"
#include "bus_service.h"

namespace kivra::e2e {

/// A desktop shell that has its own idea of the selected layout: it undoes every XKB group that
/// another program locks, and selects one when its extension is asked on the session bus.
class StubbornShell {
 public:
  StubbornShell(const std::string& display, const std::string& address);
  ~StubbornShell();
  StubbornShell(const StubbornShell&) = delete;
  StubbornShell& operator=(const StubbornShell&) = delete;

  /// The group that its indicator shows.
  unsigned int selected() const { return selected_; }

 private:
  static void onCall(GDBusConnection* bus, const char* sender, const char* path,
                     const char* interface, const char* method, GVariant* arguments,
                     GDBusMethodInvocation* invocation, gpointer self);
  static gboolean onReadable(int fd, GIOCondition condition, gpointer self);
  void readEvents();
  void lock();

  Display* display_;
  int xkbEvent_ = 0;
  BusClient client_;
  std::atomic<unsigned int> selected_ = 0;
  GSource* events_ = nullptr;
  std::optional<BusService> service_;
};

}  // namespace kivra::e2e
