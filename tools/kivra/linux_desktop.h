#pragma once

#include <string>

#include "linux_text_services.h"
#include "old_tray.h"
#include "platform/atspi/accessibility_bus.h"
#include "platform/defaults/sqlite_defaults_database.h"
#include "platform/platform.h"
#include "platform/privacy.h"
#include "platform/qt/qt_alerts.h"
#include "platform/qt/qt_local_key_monitors.h"
#include "platform/qt/qt_run_loop.h"
#include "platform/qt/qt_status_bar.h"
#include "platform/qt/qt_windows.h"
#include "platform/session/address_opener.h"
#include "platform/session/desktop_notifications.h"
#include "platform/session/layout_keepers.h"
#include "platform/session/linux_application.h"
#include "platform/session/linux_terms.h"
#include "platform/session/standard_error_log.h"
#include "platform/session/system_clock.h"
#include "platform/spelling/hunspell_spell_checker.h"
#include "platform/x11/window_activation.h"
#include "platform/x11/x11_desktop.h"

namespace kivra {

/// The Linux desktop: every service of the boundary, as an X11 session has it. Needs a
/// QtApplication.
class LinuxDesktop : public Privacy {
 public:
  /// `guardProgram` is the executable of the keyboard guard.
  explicit LinuxDesktop(std::string guardProgram, const LocalLanguageModel::Options& model = {});

  Platform platform();

  bool isProcessTrusted() override;
  bool isProcessTrustedWithOptions(bool prompt) override;

  /// Connects to the X server when that has not been possible yet.
  AccessType checkAccess() override;
  bool requestAccess() override { return checkAccess() == AccessType::granted; }
  std::string privacyPaneAddress() override { return std::string(AddressOpener::settingsAddress); }
  std::string accessibilityRemedy() override;
  std::string inputMonitoringRemedy() override { return keyboardProblem(); }
  std::string impediment() override;

 private:
  void reportMissing(std::string& reported, const std::string& missing);
  void reportLostServer();
  std::string keyboardProblem() const;
  std::string missingLayouts();
  bool takeKey(const Event& event);

  StandardErrorLog log_;
  SystemClock clock_;
  LinuxApplication application_;
  qt::QtRunLoop runLoop_;
  AccessibilityBus accessibility_;
  AddressOpener opener_ = AddressOpener::ofSession();
  SqliteDefaultsDatabase defaults_;
  HunspellSpellChecker spellChecker_;
  LayoutKeepers layoutKeepers_;
  x11::X11Desktop x11_;
  LinuxTextServices text_;
  qt::QtAlerts alerts_{x11::activateWindow};
  DesktopNotifications notifications_;
  LinuxTerms terms_;
  qt::QtLocalKeyMonitors localKeyMonitors_{[this] { return x11_.isGuardRunning(); }};
  qt::QtStatusBar statusBar_{log_, oldTray};
  qt::QtWindows windows_{x11::activateWindow};
  std::string reportedAccessibility_;
  std::string reportedInput_;
  bool isLostServerReported_ = false;
};

}  // namespace kivra
