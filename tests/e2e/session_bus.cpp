#include "session_bus.h"

#include <stdexcept>

#include "x_session.h"

namespace kivra::e2e {

namespace {

constexpr auto busEnable = {"gdbus",
                            "call",
                            "--session",
                            "-d",
                            "org.a11y.Bus",
                            "-o",
                            "/org/a11y/bus",
                            "-m",
                            "org.freedesktop.DBus.Properties.Set",
                            "org.a11y.Status",
                            "IsEnabled",
                            "<true>"};

}  // namespace

SessionBus::SessionBus(const std::filesystem::path& folder, Environment& environment)
    : environment_(environment) {
  const auto address = "unix:path=" + (folder / "bus").string();
  environment["DBUS_SESSION_BUS_ADDRESS"] = address;
  daemon_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--address=" + address},
      ChildProcess::Options{.environment = environment});
  if (!waitFor([&] { return isServed(folder / "bus"); })) {
    throw std::runtime_error("dbus-daemon does not start");
  }
}

void SessionBus::switchAccessibilityOn() const {
  if (outputOf({busEnable.begin(), busEnable.end()}, environment_).find("()") ==
      std::string::npos) {
    throw std::runtime_error("no accessibility bus (at-spi2-core)");
  }
}

}  // namespace kivra::e2e
