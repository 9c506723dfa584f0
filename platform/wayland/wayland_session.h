#pragma once

#include <memory>
#include <string>

#include "platform/guard/guarded_keyboard.h"
#include "platform/guard/keyboard_session.h"
#include "platform/wayland/client/connection.h"
#include "platform/wayland/client/toplevel_watch.h"
#include "platform/wayland/seat_keymap.h"
#include "platform/wayland/wayland_pasteboard.h"
#include "platform/wayland/wayland_workspace.h"

namespace kivra::wayland {

/// The compositor of the environment, if it has all that the program and its guard need; else null.
std::unique_ptr<Connection> servingCompositor();

/// A session of such a compositor.
class WaylandSession : public guard::KeyboardSession {
 public:
  WaylandSession(std::unique_ptr<Connection> compositor, Environment environment);

  EventTaps& eventTaps() override { return keyboard_.eventTaps; }
  EventPosting& eventPosting() override { return keyboard_.eventPosting; }
  InputSources& inputSources() override { return keyboard_.inputSources; }
  Workspace& workspace() override { return workspace_; }
  Pasteboard& pasteboard() override { return pasteboard_; }

  bool connect() override { return problem().empty(); }
  std::string problem() const override;
  std::string impediment() const override;
  bool isGuardRunning() const override { return keyboard_.isGuardRunning(); }
  bool isOwnWindowInFront() override { return workspace_.isOwnWindowInFront(); }
  /// The program's window that was opened last: compositors do not tell which is which.
  void activateWindow(std::uint32_t window) override;
  /// There is nothing that an application would answer to.
  std::function<bool()> pingActiveWindow() override;
  void tell(SessionFacts& facts) override;
  std::optional<SystemTray> systemTray() override { return std::nullopt; }

 private:
  void readEvents();
  bool isInputMethodTaken();

  Environment environment_;
  std::unique_ptr<Connection> compositor_;
  ToplevelWatch toplevels_;
  SeatKeymap keymap_;
  WaylandWorkspace workspace_;
  WaylandPasteboard pasteboard_;
  guard::GuardedKeyboard keyboard_;
  std::shared_ptr<void> watch_;
};

}  // namespace kivra::wayland
