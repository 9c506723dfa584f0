#include "platform/wayland/wayland_session.h"

#include <stdexcept>
#include <utility>

#include "platform/session/diagnosis.h"
#include "platform/session/session_names.h"
#include "platform/wayland/kwin_kind.h"
#include "platform/wayland/wlroots_kind.h"

namespace kivra::wayland {

ServingCompositor servingCompositor() try {
  auto compositor = std::make_unique<Connection>();
  if (WlrootsKind::isServing(*compositor)) {
    return {.connection = std::move(compositor), .kind = std::make_unique<WlrootsKind>()};
  }
  if (KwinKind::isServing(*compositor)) {
    return {.connection = std::move(compositor), .kind = std::make_unique<KwinKind>()};
  }
  return {};
} catch (const std::runtime_error&) {
  return {};
}

WaylandSession::WaylandSession(ServingCompositor compositor, Environment environment)
    : environment_(std::move(environment)),
      compositor_(std::move(compositor.connection)),
      kind_(std::move(compositor.kind)),
      windows_(kind_->watchWindows(*compositor_)),
      keymap_(*compositor_, [this] { keyboard_.inputSources.invalidate(); }),
      workspace_(*windows_, {.readEvents = [this] { readEvents(); },
                             .ownApplication = session_names::service,
                             .isPasswordFocused = environment_.isPasswordFocused,
                             .open = environment_.open}),
      pasteboard_(environment_.runLoop),
      keyboard_(environment_, keymap_, workspace_, kind_->guardStarter()),
      watch_(environment_.watchFd(compositor_->fd(), [this] { readEvents(); })) {
  compositor_->roundtrip();  // what is used tells how things are
  compositor_->roundtrip();  // the keyboard is only then known to be there, and has a map
}

std::string WaylandSession::problem() const {
  if (compositor_->isGone()) return "композитор Wayland не отвечает";
  return kind_->problem(*compositor_);
}

bool WaylandSession::request() {
  kind_->request();
  return connect();
}

// The compositor has all that the guard needs, but may have given it to another.
std::string WaylandSession::impediment() const {
  return keyboard_.eventTaps.isUnavailable() ? "метод ввода занят другой программой" : problem();
}

void WaylandSession::activateWindow(std::uint32_t /*window*/) {
  readEvents();
  windows_->activateLast(session_names::service, keymap_.seat());
  compositor_->flush();
}

std::function<bool()> WaylandSession::pingActiveWindow() {
  return [] { return false; };
}

void WaylandSession::tell(SessionFacts& facts) {
  using InputMethod = SessionFacts::InputMethod;
  facts.server = compositor_->serverName();
  const auto isTaken = !isGuardRunning() && !compositor_->isGone() &&
                       kind_->isInputMethodTaken(*compositor_, keymap_.seat());
  facts.inputMethod = isGuardRunning() ? InputMethod::ours
                      : isTaken        ? InputMethod::taken
                                       : InputMethod::free;
}

void WaylandSession::readEvents() {
  compositor_->dispatch();
  compositor_->flush();
  if (windows_->takeMove()) environment_.activeWindowChanged();
  if (!compositor_->isGone() || !watch_) return;
  watch_.reset();
  environment_.connectionLost();
}

}  // namespace kivra::wayland
