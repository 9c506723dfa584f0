#pragma once

#include <thread>

#include "bus_client.h"

namespace kivra::e2e {

/// Answers for an object on a bus, on a thread of its own.
class BusService {
 public:
  /// Takes the object's name on the bus. The first interface of `description`, introspection data,
  /// is served by `table`, whose functions are called on the thread with `self`.
  BusService(const BusClient& client, const BusObject& object, const char* description,
             const GDBusInterfaceVTable& table, void* self);
  ~BusService();
  BusService(const BusService&) = delete;
  BusService& operator=(const BusService&) = delete;

  /// What the thread serves.
  GMainContext* context() const { return context_; }

 private:
  void serve();

  GMainContext* context_;
  GMainLoop* loop_;
  GDBusNodeInfo* description_;
  std::thread thread_;
};

}  // namespace kivra::e2e
