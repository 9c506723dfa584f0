#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>
#include <optional>

#include "app/kivra_app.h"
#include "platform/embedded/embedded_desktop.h"
#include "platform/qt/qt_local_key_monitors.h"
#include "platform/qt/qt_windows.h"
#include "platform/qt/rows_area.h"
#include "platform/qt/switch_widget.h"

namespace kivra::qt {

/// The real windows on the embedded desktop, drawn offscreen.
class QtWindowsTest : public testing::Test {
 protected:
  void launch() {
    app_.emplace(desktop_.platform(windows_, monitors_, desktop_.statusBar));
    app_->delegate->applicationDidFinishLaunching();
    turn();
  }

  void openSettings(int tab) {
    if (!app_) launch();
    app_->services.showSettingsWindow();
    turn();
    tabs()->setCurrentIndex(tab);
    turn();
  }

  void turn() {
    QCoreApplication::processEvents();
    desktop_.time.serve();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
  }

  static QWidget* window(const char* name) {
    for (auto* const widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == name) return widget;
    }
    return nullptr;
  }

  template <class Widget>
  static Widget* named(const char* name) {
    for (auto* const top : QApplication::topLevelWidgets()) {
      for (auto* const widget : top->findChildren<Widget*>()) {
        if (widget->isVisible() && widget->accessibleName() == name) return widget;
      }
    }
    return nullptr;
  }

  static bool shows(const char* text) {
    for (auto* const top : QApplication::topLevelWidgets()) {
      for (const auto* label : top->findChildren<QLabel*>()) {
        if (label->isVisible() && label->text() == text) return true;
      }
    }
    return false;
  }

  static QTabWidget* tabs() { return window("settings")->findChild<QTabWidget*>(); }

  static RowsArea* rowsArea() {
    for (auto* const area : window("settings")->findChildren<QAbstractScrollArea*>()) {
      if (auto* const rows = dynamic_cast<RowsArea*>(area); rows && rows->isVisible()) return rows;
    }
    return nullptr;
  }

  void press(int xkbCode, int key, Qt::KeyboardModifiers modifiers) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers, static_cast<quint32>(xkbCode), 0, 0, "t");
    QCoreApplication::sendEvent(window("settings")->windowHandle(), &event);
    turn();
  }

  static void type(QLineEdit* field, const QString& text) {
    for (const auto letter : text) {
      QKeyEvent event(QEvent::KeyPress, 0, Qt::NoModifier, letter);
      QCoreApplication::sendEvent(field, &event);
    }
  }

  SettingsStore& settings() { return app_->services.settings(); }

  embedded::EmbeddedDesktop desktop_{embedded::Effects::Sink(), [] { return nullptr; }};
  QtWindows windows_;
  QtLocalKeyMonitors monitors_;
  std::optional<KivraApp> app_;
};

}  // namespace kivra::qt
