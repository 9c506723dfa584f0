#pragma once

#include <gio/gio.h>

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "platform/io/bus_connection.h"
#include "platform/io/loop_thread.h"

namespace kivra {

/// Stands in for the system's package service on the system bus of the environment.
class FakePackageKit {
 public:
  struct Behaviour {
    std::vector<std::string> available;  ///< names of packages that can be installed
    bool isRefused = false;              ///< the user says no
    bool isSilent = false;               ///< the transaction never ends
    std::function<void()> install = [] {};
  };

  explicit FakePackageKit(Behaviour behaviour);

  /// The methods that were called, in their order ("Resolve apertium-eng-spa").
  std::vector<std::string> calls();

 private:
  static void onCall(GDBusConnection* bus, const char* sender, const char* path,
                     const char* interface, const char* method, GVariant* arguments,
                     GDBusMethodInvocation* invocation, gpointer self);
  void serve();
  void handle(const std::string& path, const std::string& method, GVariant* arguments,
              GDBusMethodInvocation* invocation);
  void emit(const std::string& path, const char* signal, GVariant* arguments);
  void finish(const std::string& path, unsigned exit);

  Behaviour behaviour_;
  std::mutex mutex_;
  std::vector<std::string> calls_;
  int transactions_ = 0;
  BusConnection bus_ = connectToBus(G_BUS_TYPE_SYSTEM);
  LoopThread thread_{[this] { serve(); }};
};

}  // namespace kivra
