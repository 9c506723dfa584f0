#pragma once

#include "bus_client.h"
#include "platform/io/loop_thread.h"

namespace kivra::e2e {

/// Answers for an object on a bus, on a thread of its own.
class BusService {
 public:
  /// Takes the object's name on the bus. The first interface of `description`, introspection data,
  /// is served by `table`, whose functions are called on the thread with `self`.
  BusService(const BusClient& client, const BusObject& object, const char* description,
             const GDBusInterfaceVTable& table, void* self);

  /// What the thread serves.
  GMainContext* context() const { return thread_.context(); }

 private:
  LoopThread thread_;
};

}  // namespace kivra::e2e
