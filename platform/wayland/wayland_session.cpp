#include "platform/wayland/wayland_session.h"

#include <stdexcept>
#include <utility>

#include "input-method-unstable-v2-client-protocol.h"
#include "platform/session/diagnosis.h"
#include "platform/session/session_names.h"
#include "platform/wayland/client/calls.h"
#include "virtual-keyboard-unstable-v1-client-protocol.h"
#include "wlr-data-control-unstable-v1-client-protocol.h"
#include "wlr-foreign-toplevel-management-unstable-v1-client-protocol.h"

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

std::unique_ptr<Connection> servingCompositor() {
  try {
    auto compositor = std::make_unique<Connection>();
    return missing(*compositor).empty() ? std::move(compositor) : nullptr;
  } catch (const std::runtime_error&) {
    return nullptr;
  }
}

WaylandSession::WaylandSession(std::unique_ptr<Connection> compositor, Environment environment)
    : environment_(std::move(environment)),
      compositor_(std::move(compositor)),
      toplevels_(*compositor_),
      keymap_(*compositor_, [this] { keyboard_.inputSources.invalidate(); }),
      workspace_(toplevels_, {.readEvents = [this] { readEvents(); },
                              .ownApplication = session_names::service,
                              .isPasswordFocused = environment_.isPasswordFocused,
                              .open = environment_.open}),
      pasteboard_(environment_.runLoop),
      keyboard_(environment_, keymap_, workspace_),
      watch_(environment_.watchFd(compositor_->fd(), [this] { readEvents(); })) {
  compositor_->roundtrip();  // what is used tells how things are
  compositor_->roundtrip();  // the keyboard is only then known to be there, and has a map
}

std::string WaylandSession::problem() const {
  if (compositor_->isGone()) return "композитор Wayland не отвечает";
  const auto lacking = missing(*compositor_);
  return lacking.empty() ? "" : "композитор Wayland больше не умеет: " + lacking;
}

// The compositor has all that the guard needs, but may have given it to another.
std::string WaylandSession::impediment() const {
  return keyboard_.eventTaps.isUnavailable() ? "метод ввода занят другой программой" : problem();
}

void WaylandSession::activateWindow(std::uint32_t /*window*/) {
  readEvents();
  toplevels_.activateLast(session_names::service, keymap_.seat());
  compositor_->flush();
}

std::function<bool()> WaylandSession::pingActiveWindow() {
  return [] { return false; };
}

void WaylandSession::tell(SessionFacts& facts) {
  using InputMethod = SessionFacts::InputMethod;
  facts.server = compositor_->serverName();
  facts.inputMethod = isGuardRunning()       ? InputMethod::ours
                      : isInputMethodTaken() ? InputMethod::taken
                                             : InputMethod::free;
}

// A compositor tells it to those alone who want to be the input method.
bool WaylandSession::isInputMethodTaken() {
  if (!problem().empty()) return false;
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
      compositor_->bind<zwp_input_method_manager_v2>(zwp_input_method_manager_v2_interface),
      zwp_input_method_manager_v2_destroy);
  const Owned<zwp_input_method_v2> method(
      zwp_input_method_manager_v2_get_input_method(manager.get(), keymap_.seat()),
      zwp_input_method_v2_destroy);
  zwp_input_method_v2_add_listener(method.get(), &listener, &isTaken);
  compositor_->roundtrip();
  return isTaken;
}

void WaylandSession::readEvents() {
  compositor_->dispatch();
  compositor_->flush();
  if (toplevels_.takeMove()) environment_.activeWindowChanged();
  if (!compositor_->isGone() || !watch_) return;
  watch_.reset();
  environment_.connectionLost();
}

}  // namespace kivra::wayland
