#pragma once

#include "app/kivra_app.h"
#include "platform/platform.h"
#include "platform/session/session_service.h"

namespace kivra {

/// What others on the session bus may ask of the program: to open its settings, and the commands of
/// kivractl. Lives as long as the program; made before it is launched.
class SessionControl {
 public:
  explicit SessionControl(KivraApp& app);

  /// Some seconds from now, where no tray can show the icon, tells on the desktop how the settings
  /// are opened without it.
  void noticeMissingTray(std::function<bool()> hasTray);

 private:
  CommandReply run(const std::vector<std::string>& words, const std::string& input);

  KivraApp& app_;
  SessionService service_;
};

}  // namespace kivra
