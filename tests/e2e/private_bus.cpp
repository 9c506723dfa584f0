#include "private_bus.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "x_session.h"

namespace kivra::e2e {

namespace {

// The bus of the distribution would start services of the system by their names.
std::string configuration(const std::string& address) {
  return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><auth>EXTERNAL</auth><listen>)" +
         address + R"(</listen>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
<allow own="*"/></policy></busconfig>)";
}

}  // namespace

PrivateBus::PrivateBus() {
  std::string pattern = std::filesystem::temp_directory_path() / "kivra-bus-XXXXXX";
  home_ = ::mkdtemp(pattern.data());
  const auto address = "unix:path=" + (home_ / "bus").string();
  std::ofstream(home_ / "bus.conf") << configuration(address);
  environment_ = {{"PATH", std::getenv("PATH")},
                  {"HOME", home_},
                  {"LC_ALL", "C.UTF-8"},
                  {"XDG_RUNTIME_DIR", home_},
                  {"XDG_CONFIG_HOME", home_ / "config"},
                  {"XDG_DATA_HOME", home_ / "data"},
                  {"XDG_CACHE_HOME", home_ / "cache"},
                  {"DBUS_SESSION_BUS_ADDRESS", address}};
  daemon_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"dbus-daemon", "--nofork",
                               "--config-file=" + (home_ / "bus.conf").string()},
      ChildProcess::Options{.environment = environment_});
  if (!waitFor([this] { return isServed(home_ / "bus"); })) {
    throw std::runtime_error("dbus-daemon does not start");
  }
}

PrivateBus::~PrivateBus() {
  daemon_.reset();
  std::error_code error;
  std::filesystem::remove_all(home_, error);
}

void PrivateBus::enter() const {
  for (const auto& [name, value] : environment_) ::setenv(name.c_str(), value.c_str(), 1);
}

bool PrivateBus::hasOwner(const std::string& name) const {
  return outputOf({"gdbus", "call", "--session", "-d", "org.freedesktop.DBus", "-o",
                   "/org/freedesktop/DBus", "-m", "org.freedesktop.DBus.NameHasOwner", name},
                  environment_)
             .find("true") != std::string::npos;
}

}  // namespace kivra::e2e
