#include "platform/x11/x11_session.h"

#include <utility>

#include "platform/session/diagnosis.h"
#include "platform/x11/system_tray.h"
#include "platform/x11/window_activation.h"
#include "platform/x11/window_ping.h"

namespace kivra::x11 {

namespace {

/// The guard hears of clicks from the server: applications need not tell of their carets.
guard::KeyboardSession::Environment withoutCaret(guard::KeyboardSession::Environment environment) {
  environment.lastCaretMove = nullptr;
  return environment;
}

}  // namespace

X11Session::X11Session(Environment environment)
    : environment_(withoutCaret(std::move(environment))),
      workspace_(connection_, {.isPasswordFocused = environment_.isPasswordFocused,
                               .activeWindowChanged = environment_.activeWindowChanged,
                               .open = environment_.open}),
      pasteboard_(environment_.runLoop),
      keyboard_(environment_, connection_, workspace_) {
  connection_.onMapChange([this] { keyboard_.inputSources.invalidate(); });
}

bool X11Session::connect() {
  if (connection_.isConnected()) return true;
  if (!connection_.connect()) return false;
  watch_ = environment_.watchFd(connection_.fd(), [this] { readEvents(); });
  return true;
}

void X11Session::activateWindow(std::uint32_t window) { x11::activateWindow(window); }

std::function<bool()> X11Session::pingActiveWindow() {
  return [ping = std::make_shared<WindowPing>()] { return ping->isPending(); };
}

void X11Session::tell(SessionFacts& facts) { facts.server = connection_.serverName(); }

std::optional<SystemTray> X11Session::systemTray() { return x11::systemTray(); }

void X11Session::readEvents() {
  connection_.readEvents();
  if (!connection_.isLost()) return;
  watch_.reset();
  environment_.connectionLost();
}

}  // namespace kivra::x11
