#include "gnome_server.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "bus_client.h"
#include "x_session.h"

namespace kivra::e2e {

namespace {

constexpr auto shellDisplay = "wayland-8";
constexpr auto extension = "kivra-input-source@kivra";
const BusObject shellObject = {"org.gnome.Shell", "/org/gnome/Shell"};

}  // namespace

GnomeServer::GnomeServer()
    : environment_(system_.environment()), session_(sessionFolder(), environment_) {
  installExtension();
  writeSettings();
  session_.switchAccessibilityOn();
  environment_.insert(
      {{"DBUS_SYSTEM_BUS_ADDRESS", system_.environment().at("DBUS_SESSION_BUS_ADDRESS")},
       {"GSETTINGS_BACKEND", "keyfile"},
       {"LIBGL_ALWAYS_SOFTWARE", "1"},
       {"XDG_CURRENT_DESKTOP", "GNOME"},
       {"XDG_SESSION_TYPE", "wayland"}});
  shell_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"gnome-shell", "--headless", "--wayland", "--no-x11",
                               "--virtual-monitor", "1024x768", "--wayland-display", shellDisplay},
      ChildProcess::Options{.environment = environment_, .outputFile = path("shell.log")});
  environment_["WAYLAND_DISPLAY"] = shellDisplay;
  // The shell opens it as the last step of its start; until it is closed, no window has the focus.
  waitForOverview(true);
  showOverview(false);
  for (const auto& [name, value] : environment_) ::setenv(name.c_str(), value.c_str(), 1);
}

GnomeServer::~GnomeServer() { shell_.reset(); }

std::filesystem::path GnomeServer::sessionFolder() const {
  std::filesystem::create_directories(path("session"));
  return path("session");
}

std::string GnomeServer::readFile(const std::string& name) const {
  std::ifstream file(path(name));
  return {std::istreambuf_iterator(file), {}};
}

std::string GnomeServer::engine() const {
  auto name = outputOf({"ibus", "engine"}, environment_);
  name.resize(std::min(name.find('\n'), name.size()));
  return name;
}

void GnomeServer::installExtension() const {
  const auto folder = path("data") / "gnome-shell/extensions" / extension;
  std::filesystem::create_directories(folder);
  for (const auto* const name : {"extension.js", "metadata.json"}) {
    std::filesystem::copy_file(std::filesystem::path(KIVRA_GNOME_EXTENSION) / name, folder / name);
  }
}

void GnomeServer::writeSettings() const {
  const auto folder = path("config") / "glib-2.0/settings";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "keyfile") << "[org/gnome/desktop/input-sources]\n"
                                       "sources=[('xkb','us'),('xkb','ru')]\n"
                                       "[org/gnome/desktop/interface]\n"
                                       "enable-animations=false\n"
                                       "[org/gnome/desktop/peripherals/keyboard]\n"
                                       "delay=uint32 3000\n"
                                       "[org/gnome/shell]\n"
                                       "welcome-dialog-last-shown-version='99'\n"
                                       "enabled-extensions=['"
                                    << extension << "']\n";
}

void GnomeServer::showOverview(bool isShown) const {
  const BusClient bus(environment_.at("DBUS_SESSION_BUS_ADDRESS"));
  bus.call(shellObject, "org.freedesktop.DBus.Properties", "Set",
           g_variant_new("(ssv)", "org.gnome.Shell", "OverviewActive",
                         g_variant_new_boolean(isShown ? TRUE : FALSE)));
  waitForOverview(isShown);
}

void GnomeServer::waitForOverview(bool isShown) const {
  const BusClient bus(environment_.at("DBUS_SESSION_BUS_ADDRESS"));
  const auto isDone = [&] {
    const auto value = bus.property(shellObject, "org.gnome.Shell", "OverviewActive");
    return value && (g_variant_get_boolean(value.get()) != 0) == isShown;
  };
  if (!waitFor(isDone, std::chrono::seconds(60))) {
    throw std::runtime_error("GNOME Shell does not start: " + readFile("shell.log"));
  }
}

}  // namespace kivra::e2e
