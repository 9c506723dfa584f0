#pragma once

#include <memory>
#include <string>

#include "platform/guard/guarded_keyboard.h"
#include "platform/guard/keyboard_session.h"
#include "platform/wayland/compositor_kind.h"
#include "platform/wayland/seat_keymap.h"
#include "platform/wayland/wayland_pasteboard.h"
#include "platform/wayland/wayland_workspace.h"

namespace kivra::wayland {

/// A session of a compositor.
class WaylandSession : public guard::KeyboardSession {
 public:
  WaylandSession(ServingCompositor compositor, Environment environment);

  EventTaps& eventTaps() override { return keyboard_.eventTaps; }
  EventPosting& eventPosting() override { return keyboard_.eventPosting; }
  InputSources& inputSources() override { return keyboard_.inputSources; }
  Workspace& workspace() override { return workspace_; }
  Pasteboard& pasteboard() override { return pasteboard_; }

  bool connect() override { return problem().empty(); }
  bool request() override;
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

  Environment environment_;
  std::unique_ptr<Connection> compositor_;
  std::unique_ptr<CompositorKind> kind_;
  std::unique_ptr<WindowWatch> windows_;
  SeatKeymap keymap_;
  WaylandWorkspace workspace_;
  WaylandPasteboard pasteboard_;
  guard::GuardedKeyboard keyboard_;
  std::shared_ptr<void> watch_;
};

}  // namespace kivra::wayland
