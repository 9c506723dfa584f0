#pragma once

#include <memory>

#include "platform/guard/guarded_keyboard.h"
#include "platform/guard/keyboard_session.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_pasteboard.h"
#include "platform/x11/x11_workspace.h"

namespace kivra::x11 {

/// A session on the X server of $DISPLAY.
class X11Session : public guard::KeyboardSession {
 public:
  explicit X11Session(Environment environment);

  EventTaps& eventTaps() override { return keyboard_.eventTaps; }
  EventPosting& eventPosting() override { return keyboard_.eventPosting; }
  InputSources& inputSources() override { return keyboard_.inputSources; }
  Workspace& workspace() override { return workspace_; }
  Pasteboard& pasteboard() override { return pasteboard_; }

  bool connect() override;
  std::string problem() const override { return connection_.problem(); }
  std::string impediment() const override { return connection_.impediment(); }
  bool isGuardRunning() const override { return keyboard_.isGuardRunning(); }
  bool isOwnWindowInFront() override { return workspace_.isOwnWindowInFront(); }
  void activateWindow(std::uint32_t window) override;
  std::function<bool()> pingActiveWindow() override;
  void tell(SessionFacts& facts) override;
  std::optional<SystemTray> systemTray() override;

 private:
  void readEvents();

  Environment environment_;
  X11Connection connection_;
  X11Workspace workspace_;
  X11Pasteboard pasteboard_;
  guard::GuardedKeyboard keyboard_;
  std::shared_ptr<void> watch_;
};

}  // namespace kivra::x11
