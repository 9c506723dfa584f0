#pragma once

#include <memory>
#include <string>
#include <vector>

#include "linux_text_services.h"
#include "platform/atspi/accessibility_bus.h"
#include "platform/defaults/sqlite_defaults_database.h"
#include "platform/guard/keyboard_session.h"
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

namespace kivra {

/// The Linux desktop: every service of the boundary. Needs a QtApplication.
class LinuxDesktop : public Privacy {
 public:
  /// `guardProgram` is the executable of the keyboard guard.
  explicit LinuxDesktop(std::string guardProgram, const LocalLanguageModel::Options& model = {});

  Platform platform();

  /// Whether the desktop has a place for the program's icon.
  bool hasTray();

  bool isProcessTrusted() override;
  bool isProcessTrustedWithOptions(bool prompt) override;

  AccessType checkAccess() override;
  /// Connects to the display when that has not been possible yet.
  bool requestAccess() override;
  std::string privacyPaneAddress() override { return std::string(AddressOpener::settingsAddress); }
  std::string accessibilityRemedy() override;
  std::string inputMonitoringRemedy() override;
  std::string impediment() override;
  bool hasDiagnosis() override { return true; }
  std::vector<std::string> diagnosis() override;

 private:
  guard::KeyboardSession::Environment sessionEnvironment(std::string guardProgram);
  void reportMissing();
  void reportLostDisplay();
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
  std::unique_ptr<guard::KeyboardSession> session_;
  LinuxTextServices text_;
  qt::QtAlerts alerts_;
  DesktopNotifications notifications_;
  LinuxTerms terms_;
  qt::QtLocalKeyMonitors localKeyMonitors_{[this] { return session_->isGuardRunning(); }};
  qt::QtStatusBar statusBar_{log_, [this] { return session_->systemTray(); }};
  qt::QtWindows windows_;
  bool isLostDisplayReported_ = false;
};

}  // namespace kivra
