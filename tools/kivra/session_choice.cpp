#include "session_choice.h"

#include <cstdlib>
#include <utility>

#include "platform/ibus/gnome_session.h"
#include "platform/wayland/wayland_session.h"
#include "platform/x11/display.h"
#include "platform/x11/x11_pasteboard.h"
#include "platform/x11/x11_session.h"

namespace kivra {

namespace {

bool isSet(const char* variable) {
  const auto* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

}  // namespace

bool hasDisplay() {
  return isSet("WAYLAND_DISPLAY") || (isSet("DISPLAY") && x11::isDisplayThere());
}

std::string displayName() {
  for (const auto& [kind, variable] :
       {std::pair("Wayland", "WAYLAND_DISPLAY"), std::pair("X11", "DISPLAY")}) {
    if (isSet(variable)) return std::string(kind) + " (" + std::getenv(variable) + ")";
  }
  return "без дисплея";
}

std::unique_ptr<guard::KeyboardSession> openSession(
    guard::KeyboardSession::Environment environment) {
  if (auto compositor = wayland::servingCompositor(); compositor.connection) {
    return std::make_unique<wayland::WaylandSession>(std::move(compositor), std::move(environment));
  }
  if (auto shell = ibus::gnomeShell()) {
    auto pasteboard = std::make_unique<x11::X11Pasteboard>(environment.runLoop);
    return std::make_unique<ibus::GnomeSession>(std::move(shell), std::move(pasteboard),
                                                std::move(environment));
  }
  return std::make_unique<x11::X11Session>(std::move(environment));
}

}  // namespace kivra
