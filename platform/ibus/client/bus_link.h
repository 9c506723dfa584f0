#pragma once

#include <systemd/sd-bus.h>

#include <memory>
#include <string>

namespace kivra::ibus {

struct CloseBus {
  void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
};
using Bus = std::unique_ptr<sd_bus, CloseBus>;

struct UnrefMessage {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, UnrefMessage>;

/// A connection to the bus at the address; null when nobody answers there.
Bus connectTo(const std::string& address);

/// Does what has come and sends what there is to be sent, without waiting. False when the bus is
/// gone.
bool process(sd_bus* bus);

/// The address of the session's IBus daemon, as the daemon has written it down; empty where there
/// is none.
std::string ibusAddress();

}  // namespace kivra::ibus
