#include "platform/wayland/wlroots_kind.h"

#include "input-method-unstable-v2-client-protocol.h"
#include "platform/wayland/client/calls.h"
#include "platform/wayland/client/toplevel_watch.h"
#include "virtual-keyboard-unstable-v1-client-protocol.h"
#include "wlr-data-control-unstable-v1-client-protocol.h"

namespace kivra::wayland {

namespace {

/// The names of what the compositor lacks.
std::string missing(const Connection& compositor) {
  std::string names;
  for (const auto* interface :
       {&zwp_input_method_manager_v2_interface, &zwp_virtual_keyboard_manager_v1_interface,
        &zwlr_foreign_toplevel_manager_v1_interface, &zwlr_data_control_manager_v1_interface}) {
    if (compositor.offers(*interface)) continue;
    names += (names.empty() ? "" : ", ") + std::string(interface->name);
  }
  return names;
}

}  // namespace

bool WlrootsKind::isServing(const Connection& compositor) { return missing(compositor).empty(); }

std::string WlrootsKind::problem(const Connection& compositor) const {
  const auto lacking = missing(compositor);
  return lacking.empty() ? "" : "композитор Wayland больше не умеет: " + lacking;
}

std::unique_ptr<WindowWatch> WlrootsKind::watchWindows(Connection& compositor) const {
  return std::make_unique<ToplevelWatch>(compositor);
}

// A compositor tells it to those alone who want to be the input method.
bool WlrootsKind::isInputMethodTaken(Connection& compositor, wl_seat* seat) const {
  static constexpr zwp_input_method_v2_listener listener = {
      .activate = Ignores{},
      .deactivate = Ignores{},
      .surrounding_text = Ignores{},
      .text_change_cause = Ignores{},
      .content_type = Ignores{},
      .done = Ignores{},
      .unavailable = [](void* isTaken, zwp_input_method_v2* /*method*/) {
        *static_cast<bool*>(isTaken) = true;
      }};
  bool isTaken = false;
  const Owned<zwp_input_method_manager_v2> manager(
      compositor.bind<zwp_input_method_manager_v2>(zwp_input_method_manager_v2_interface),
      zwp_input_method_manager_v2_destroy);
  const Owned<zwp_input_method_v2> method(
      zwp_input_method_manager_v2_get_input_method(manager.get(), seat),
      zwp_input_method_v2_destroy);
  zwp_input_method_v2_add_listener(method.get(), &listener, &isTaken);
  compositor.roundtrip();
  return isTaken;
}

}  // namespace kivra::wayland
