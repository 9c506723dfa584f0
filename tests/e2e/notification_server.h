#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "bus_client.h"
#include "bus_service.h"

namespace kivra::e2e {

/// A desktop's server of notifications, on a session bus.
class NotificationServer {
 public:
  struct Shown {
    std::uint32_t replaced = 0;  ///< the number of the one whose place it takes; 0: of none
    std::string title;
    std::string text;
    std::vector<std::string> buttons;  ///< name and label of each
  };

  explicit NotificationServer(const std::string& address);

  /// Waits until so many have been shown, and answers all; fewer when no more come.
  std::vector<Shown> waitFor(std::size_t count);

  /// Presses the first button of the last one, or closes it.
  void pressButton();
  void close();

 private:
  static void onCall(GDBusConnection* bus, const char* sender, const char* path,
                     const char* interface, const char* method, GVariant* arguments,
                     GDBusMethodInvocation* invocation, gpointer self);
  std::uint32_t add(GVariant* notification);
  void emit(const char* signal, GVariant* arguments);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Shown> shown_;
  BusClient client_;
  BusService service_;
};

}  // namespace kivra::e2e
