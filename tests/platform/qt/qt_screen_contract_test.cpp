// Windows and status bar as Qt draws them, on a screen that nobody sees.

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

#include "platform/embedded/embedded_desktop.h"
#include "platform/qt/qt_status_bar.h"
#include "platform/qt/qt_windows.h"
#include "platform/status_bar_contract.h"
#include "platform/windows_contract.h"

namespace kivra::qt {
namespace {

class QtScreen {
 public:
  Windows& windows() { return windows_; }
  StatusBar& bar() { return bar_; }

  bool isShown(const std::string& name) const {
    turn();
    const auto* const widget = window(name);
    return widget != nullptr && widget->isVisible();
  }
  bool shows(const std::string& name, const std::string& text) const {
    turn();
    return find<QLabel>(name, [&](const QLabel& label) { return label.text() == text.c_str(); }) !=
           nullptr;
  }
  void close(const std::string& name) {
    window(name)->close();
    turn();
  }
  void press(const std::string& name, const std::string& text) {
    turn();
    auto* const button = find<QAbstractButton>(name, [&](const QAbstractButton& candidate) {
      return candidate.text() == text.c_str() || candidate.accessibleName() == text.c_str();
    });
    ASSERT_NE(button, nullptr) << text;
    QTest::mouseClick(button, Qt::LeftButton);
    turn();
  }
  void type(const std::string& name, const std::string& placeholder, const std::string& text) {
    turn();
    auto* const field = find<QLineEdit>(name, [&](const QLineEdit& candidate) {
      return candidate.placeholderText() == placeholder.c_str();
    });
    ASSERT_NE(field, nullptr) << placeholder;
    field->setFocus();
    for (const auto letter : text) {
      auto* const focused = window(name)->focusWidget();
      ASSERT_NE(focused, nullptr) << "the cursor is gone before " << letter;
      QTest::keyClick(focused, letter);
      turn();
    }
  }

  std::vector<MenuItem> openMenu() const {
    std::vector<MenuItem> items;
    auto* const open = menu();
    if (open == nullptr) return items;
    open->popup({});
    turn();
    for (const auto* action : open->actions()) {
      const auto key = action->shortcut().toString().remove("Ctrl+").toLower();
      items.push_back({.title = action->text().replace("&&", "&").toStdString(),
                       .keyEquivalent = key.toStdString(),
                       .isEnabled = action->isEnabled(),
                       .isSeparator = action->isSeparator()});
    }
    open->close();
    return items;
  }
  void choose(const std::string& title) {
    auto* const open = menu();
    ASSERT_NE(open, nullptr);
    open->popup({});
    turn();
    for (auto* const action : open->actions()) {
      if (action->text() == title.c_str()) {
        QTest::mouseClick(open, Qt::LeftButton, {}, open->actionGeometry(action).center());
        break;
      }
    }
    open->close();
    turn();
  }

 private:
  static void turn() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
  }
  static QWidget* window(const std::string& name) {
    for (auto* const widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == name.c_str()) return widget;
    }
    return nullptr;
  }
  static QMenu* menu() {
    for (auto* const widget : QApplication::topLevelWidgets()) {
      if (auto* const found = qobject_cast<QMenu*>(widget)) return found;
    }
    return nullptr;
  }
  /// The visible widget that is wanted.
  template <class Widget>
  static Widget* find(const std::string& name, const std::function<bool(const Widget&)>& isWanted) {
    const auto* const top = window(name);
    if (top == nullptr) return nullptr;
    for (auto* const widget : top->findChildren<Widget*>()) {
      if (widget->isVisible() && isWanted(*widget)) return widget;
    }
    return nullptr;
  }

  embedded::EmbeddedDesktop desktop_{nullptr, nullptr};
  QtWindows windows_;
  QtStatusBar bar_{desktop_.session, [] { return std::nullopt; }};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, WindowsContract, QtScreen);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, StatusBarContract, QtScreen);

}  // namespace
}  // namespace kivra::qt
