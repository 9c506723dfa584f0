#include "platform/wayland/wayland_workspace.h"

#include "platform/session/application_identifiers.h"

namespace kivra::wayland {

std::optional<std::string> WaylandWorkspace::frontmostBundleIdentifier() {
  const auto application = activeApplication();
  if (!application || application->empty()) return std::nullopt;
  return bundleIdentifier(*application);
}

std::optional<std::string> WaylandWorkspace::activeApplication() {
  environment_.readEvents();
  return windows_.activeApplication();
}

}  // namespace kivra::wayland
