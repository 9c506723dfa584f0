#include "platform/wayland/client/plasma_window_watch.h"

#include <algorithm>
#include <fstream>

#include "platform/wayland/client/calls.h"

namespace kivra::wayland {

namespace {

constexpr std::uint32_t version = 12;

std::string processName(std::uint32_t pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/comm");
  std::string name;
  std::getline(file, name);
  return name;
}

}  // namespace

PlasmaWindowWatch::PlasmaWindowWatch(Connection& connection)
    : manager_(nullptr, org_kde_plasma_window_management_destroy) {
  if (!connection.offers(org_kde_plasma_window_management_interface)) return;
  static constexpr org_kde_plasma_window_management_listener listener = {
      .show_desktop_changed = Ignores{},
      .window = Calls<&PlasmaWindowWatch::add>{},
      .stacking_order_changed = Ignores{},
      .stacking_order_uuid_changed = Ignores{},
      .window_with_uuid = Ignores{}};
  manager_.reset(connection.bind<org_kde_plasma_window_management>(
      org_kde_plasma_window_management_interface, version));
  org_kde_plasma_window_management_add_listener(manager_.get(), &listener, this);
}

void PlasmaWindowWatch::add(std::uint32_t id) {
  static constexpr org_kde_plasma_window_listener listener = {
      .title_changed = Ignores{},
      .app_id_changed = Calls<&Window::readApplication>{},
      .state_changed = Calls<&Window::readState>{},
      .virtual_desktop_changed = Ignores{},
      .themed_icon_name_changed = Ignores{},
      .unmapped = Calls<&Window::unmapped>{},
      .initial_state = Ignores{},
      .parent_window = Ignores{},
      .geometry = Ignores{},
      .icon_changed = Ignores{},
      .pid_changed = Calls<&Window::readProcess>{},
      .virtual_desktop_entered = Ignores{},
      .virtual_desktop_left = Ignores{},
      .application_menu = Ignores{},
      .activity_entered = Ignores{},
      .activity_left = Ignores{},
      .resource_name_changed = Ignores{}};
  auto* const handle = org_kde_plasma_window_management_get_window(manager_.get(), id);
  auto& window = windows_.emplace_back(
      Window{.watch = this, .handle = {handle, org_kde_plasma_window_destroy}});
  org_kde_plasma_window_add_listener(handle, &listener, &window);
}

void PlasmaWindowWatch::Window::readState(std::uint32_t flags) {
  isActive = (flags & ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE) != 0;
  watch->update();
}

// What has no desktop entry is known by its program.
std::optional<std::string> PlasmaWindowWatch::activeApplication() const {
  if (active_ == nullptr) return std::nullopt;
  return active_->application.empty() ? processName(active_->process) : active_->application;
}

void PlasmaWindowWatch::activateLast(std::string_view application, wl_seat* /*seat*/) const {
  const auto found = std::find_if(
      windows_.rbegin(), windows_.rend(),
      [application](const Window& window) { return window.application == application; });
  if (found == windows_.rend()) return;
  org_kde_plasma_window_set_state(found->handle.get(),
                                  ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE,
                                  ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE);
}

void PlasmaWindowWatch::remove(const Window* window) {
  windows_.remove_if([window](const Window& other) { return &other == window; });
  update();
}

void PlasmaWindowWatch::update() {
  const auto active = std::ranges::find_if(windows_, &Window::isActive);
  const auto* const now = active == windows_.end() ? nullptr : &*active;
  if (std::exchange(active_, now) != now) hasMoved_ = true;
}

}  // namespace kivra::wayland
