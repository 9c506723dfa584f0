// Shows the status item and the windows of Kivra on the screen, with the embedded desktop behind
// them: nothing that is changed here reaches the user's settings, and no key is intercepted.

#include <QAbstractButton>
#include <QApplication>
#include <QPalette>
#include <QPixmap>
#include <QScreen>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <chrono>
#include <cstring>
#include <iostream>
#include <string>

#include "app/kivra_app.h"
#include "platform/embedded/embedded_desktop.h"
#include "platform/qt/qt_local_key_monitors.h"
#include "platform/qt/qt_status_bar.h"
#include "platform/qt/qt_windows.h"
#include "platform/qt/symbol.h"
#include "platform/session/linux_terms.h"
#include "platform/x11/system_tray.h"
#include "program_options.h"

namespace {

constexpr const char* usage =
    "Usage: kivra-windows [--dark] [FOLDER]   shows the windows; with FOLDER saves pictures of "
    "them\n";

QPalette darkPalette() {
  QPalette dark(QColor(0x2B, 0x2B, 0x2E));
  dark.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x20));
  dark.setColor(QPalette::Highlight, QColor(0x3D, 0x8B, 0xFD));
  for (const auto role : {QPalette::ButtonText, QPalette::Text, QPalette::WindowText}) {
    dark.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x84));
  }
  return dark;
}

/// What the program does to the embedded desktop: logs, prompts, addresses opened, its end.
void printEffect(const kivra::embedded::Json& effect) {
  std::cout << effect.dump() << std::endl;
  if (effect.contains("terminate")) QApplication::exit();
}

/// The program on its two desktops.
class Gallery {
 public:
  Gallery() {
    desktop_.session.setAccessibilityGranted(false);
    desktop_.session.setInputMonitoringGranted(false);
    QObject::connect(&clock_, &QTimer::timeout, [this] { desktop_.time.runFor(tick); });
    clock_.start(tick);
    app_.delegate->applicationDidFinishLaunching();
  }

  void showSettings() { app_.services.showSettingsWindow(); }

  void save(const QString& folder) {
    savePicture(folder + "/permissions-missing.png", window("permissions"));
    desktop_.session.setAccessibilityGranted(true);
    desktop_.time.runFor(std::chrono::seconds(1));
    savePicture(folder + "/permissions.png", window("permissions"));
    showSettings();
    auto* const tabs = window("settings")->findChild<QTabWidget*>();
    for (int i = 0; i < tabs->count(); ++i) {
      tabs->setCurrentIndex(i);
      savePicture(folder + QString("/settings-%1.png").arg(i + 1), window("settings"));
    }
    auto* const recorder = control<QAbstractButton>("Перевод №2");
    recorder->click();
    savePicture(folder + "/settings-recording.png", window("settings"));
    recorder->click();
    app_.services.settings().translationEngine.set(kivra::EngineKind::foundationModel);
    tabs->setCurrentIndex(1);
    savePicture(folder + "/settings-warning.png", window("settings"));
    saveLongEntries(folder, *tabs);
  }

 private:
  static constexpr std::chrono::milliseconds tick{10};

  void saveLongEntries(const QString& folder, QTabWidget& tabs) {
    const std::string longText = "очень длинная запись, которая не помещается ни в какую строку";
    app_.services.replacements().setEntries(
        {{kivra::Uuid::random(), "спс", "спасибо"},
         {kivra::Uuid::random(), longText, "коротко"},
         {kivra::Uuid::random(), "длинно", longText},
         {kivra::Uuid::random(), longText, longText},
         {kivra::Uuid::random(), "שלום עולם", "\u202E\u0007👍🏽 مرحبا"}});
    for (int i = 0; i < 20; ++i) app_.services.replacements().add("ещё " + std::to_string(i), "…");
    tabs.setCurrentIndex(2);
    savePicture(folder + "/settings-entries.png", window("settings"));
  }

  template <class Widget>
  static Widget* control(const char* name) {
    for (auto* const widget : window("settings")->findChildren<Widget*>()) {
      if (widget->accessibleName() == name) return widget;
    }
    return nullptr;
  }

  static QWidget* window(const char* name) {
    for (auto* const widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == name) return widget;
    }
    return nullptr;
  }

  static void savePicture(const QString& file, QWidget* shown) {
    shown->raise();
    shown->activateWindow();
    QTest::qWait(400);
    const auto frame = shown->frameGeometry();
    shown->screen()->grabWindow(0, frame.x(), frame.y(), frame.width(), frame.height()).save(file);
  }

  kivra::embedded::EmbeddedDesktop desktop_{printEffect, [] { return nullptr; }};
  kivra::qt::QtWindows windows_;
  kivra::qt::QtLocalKeyMonitors monitors_;
  kivra::qt::QtStatusBar statusBar_{desktop_.session, kivra::x11::systemTray};
  kivra::LinuxTerms terms_;
  kivra::KivraApp app_{desktop_.platform(windows_, monitors_, statusBar_, terms_)};
  QTimer clock_;
};

}  // namespace

int main(int count, char** values) {
  constexpr auto program = "kivra-windows";
  if (const auto status = kivra::answerCommonOption({values + 1, values + count}, program, usage)) {
    return *status;
  }
  QApplication application(count, values);
  QApplication::setQuitOnLastWindowClosed(true);
  QApplication::setWindowIcon(kivra::qt::applicationIcon());
  QString folder;
  for (int i = 1; i < count; ++i) {
    if (std::strcmp(values[i], "--dark") == 0) {
      QApplication::setStyle(QStyleFactory::create("Fusion"));
      QApplication::setPalette(darkPalette());
    } else if (values[i][0] != '-' && folder.isEmpty()) {
      folder = values[i];
    } else {
      return kivra::complainOfUsage(program, std::string("unknown option or file ") + values[i]);
    }
  }
  Gallery gallery;
  if (!folder.isEmpty()) {
    gallery.save(folder);
    return 0;
  }
  gallery.showSettings();
  return QApplication::exec();
}
