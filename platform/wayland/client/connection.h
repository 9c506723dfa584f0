#pragma once

#include <wayland-client.h>

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace kivra::wayland {

/// An object of libwayland's with the function that ends it.
template <class Object>
using Owned = std::unique_ptr<Object, void (*)(Object*)>;

/// A connection to a compositor, and what it offers.
class Connection {
 public:
  /// Connects to the compositor of this name, or that of the environment, and waits until it has
  /// said what it offers. Throws std::runtime_error, with a line for the user, when there is none.
  explicit Connection(const std::string& name = {});
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  int fd() const { return wl_display_get_fd(display_.get()); }

  /// The name of the compositor's program; empty when it cannot be told.
  std::string serverName() const;

  bool isGone() const { return wl_display_get_error(display_.get()) != 0; }

  bool offers(const wl_interface& interface) const { return globals_.contains(interface.name); }

  /// Binds what the compositor offers, in this version or, if that is lower, in its own. Throws
  /// std::runtime_error, with a line for the user, when it offers none.
  template <class Interface>
  Interface* bind(const wl_interface& interface, std::uint32_t version = 1) {
    return static_cast<Interface*>(bindGlobal(interface, version));
  }

  /// Sends everything and waits until the compositor has done it; false when it is gone, or does
  /// not answer in time.
  bool roundtrip(std::chrono::milliseconds patience = std::chrono::seconds(5));

  /// Is done when the compositor has done everything that was asked of it before.
  Owned<wl_callback> sync() { return {wl_display_sync(display_.get()), wl_callback_destroy}; }

  /// Tells the listeners what has come, without waiting; false when the compositor is gone.
  bool dispatch();

  /// Sends everything. Waits for a compositor that is slow to read, at most for a second: what does
  /// not fit is lost, and the connection with it.
  void flush();

  /// Called after each of many requests, keeps them from being too many to be sent.
  void makeRoom();

 private:
  struct Global {
    std::uint32_t name = 0;
    std::uint32_t version = 0;
  };

  void addGlobal(std::uint32_t name, const char* interface, std::uint32_t version);
  void removeGlobal(std::uint32_t name);
  void* bindGlobal(const wl_interface& interface, std::uint32_t version);

  Owned<wl_display> display_;
  Owned<wl_registry> registry_;
  int unsent_ = 0;                         // requests, at most
  std::map<std::string, Global> globals_;  // by interface, the first of each
};

}  // namespace kivra::wayland
