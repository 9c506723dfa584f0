#include "platform/ibus/client/bus_link.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace kivra::ibus {

namespace {

std::string environment(const char* variable) {
  const auto* const value = std::getenv(variable);
  return value == nullptr ? "" : value;
}

std::filesystem::path configuration() {
  const auto folder = environment("XDG_CONFIG_HOME");
  return folder.empty() ? std::filesystem::path(environment("HOME")) / ".config"
                        : std::filesystem::path(folder);
}

std::string machineId() {
  for (const auto* const path : {"/etc/machine-id", "/var/lib/dbus/machine-id"}) {
    std::ifstream file(path);
    std::string id;
    if (file >> id) return id;
  }
  return {};
}

}  // namespace

Bus connectTo(const std::string& address) {
  sd_bus* bus = nullptr;
  if (address.empty() || sd_bus_new(&bus) < 0) return nullptr;
  Bus owned(bus);
  if (sd_bus_set_address(bus, address.c_str()) < 0 || sd_bus_set_bus_client(bus, 1) < 0 ||
      sd_bus_start(bus) < 0) {
    return nullptr;
  }
  return owned;
}

bool process(sd_bus* bus) {
  int result = 0;
  do result = sd_bus_process(bus, nullptr);
  while (result > 0);
  return result >= 0;
}

std::string ibusAddress() {
  if (auto address = environment("IBUS_ADDRESS"); !address.empty()) return address;
  // Where the daemon of a Wayland session writes it down.
  std::ifstream file(configuration() / "ibus/bus" /
                     (machineId() + "-unix-" + environment("WAYLAND_DISPLAY")));
  constexpr std::string_view name = "IBUS_ADDRESS=";
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(name)) return line.substr(name.size());
  }
  return {};
}

}  // namespace kivra::ibus
