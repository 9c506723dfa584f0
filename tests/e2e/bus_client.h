#pragma once

#include <gio/gio.h>

#include <memory>
#include <string>

namespace kivra::e2e {

struct UnrefVariant {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using Variant = std::unique_ptr<GVariant, UnrefVariant>;

/// An object on a bus.
struct BusObject {
  std::string name;
  std::string path;
};

/// A connection of its own to a D-Bus bus. Throws std::runtime_error where there is none.
class BusClient {
 public:
  explicit BusClient(const std::string& address);
  ~BusClient();
  BusClient(const BusClient&) = delete;
  BusClient& operator=(const BusClient&) = delete;

  GDBusConnection* connection() const { return connection_; }

  /// Calls a method with the arguments, a tuple which it takes; nothing when the call fails.
  Variant call(const BusObject& object, const char* interface, const char* method,
               GVariant* arguments = nullptr) const;
  /// The value of a property; nothing when it cannot be had.
  Variant property(const BusObject& object, const char* interface, const char* property) const;

 private:
  GDBusConnection* connection_;
};

}  // namespace kivra::e2e
