#include "platform/qt/qt_status_bar.h"

#include <QAction>
#include <QCursor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QKeyEvent>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>
#include <optional>
#include <utility>

#include "platform/qt/symbol.h"
#include "platform/qt/tray_icon.h"
#include "platform/qt/view_style.h"

namespace kivra::qt {

namespace {

constexpr std::chrono::seconds trayCheckInterval(2);
constexpr int answerTimeout = 500;  // ms
constexpr auto hostName = "org.kde.StatusNotifierWatcher";

// The watcher may be there before any panel.
bool hasHost() {
  auto question = QDBusMessage::createMethodCall(hostName, "/StatusNotifierWatcher",
                                                 "org.freedesktop.DBus.Properties", "Get");
  question.setAutoStartService(false);
  question << hostName << "IsStatusNotifierHostRegistered";
  const QDBusReply<QVariant> answer =
      QDBusConnection::sessionBus().call(question, QDBus::Block, answerTimeout);
  return answer.isValid() && answer.value().toBool();
}

/// A menu whose key equivalents work while it is open.
class StatusMenu : public QMenu {
 public:
  StatusMenu() { showDisabledLines(); }

  void setItems(const std::vector<MenuItem>& items) {
    clear();
    for (const auto& item : items) addItem(item);
  }

 protected:
  /// Lines that only say something are to be read.
  void changeEvent(QEvent* event) override {
    QMenu::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) showDisabledLines();
  }

  void keyPressEvent(QKeyEvent* event) override {
    for (auto* const action : actions()) {
      if (!action->shortcut().isEmpty() && action->shortcut() == event->keyCombination()) {
        close();
        action->trigger();
        return;
      }
    }
    QMenu::keyPressEvent(event);
  }

 private:
  void showDisabledLines() {
    auto colors = palette();
    const auto readable = secondaryColor(colors);
    if (colors.color(QPalette::Disabled, QPalette::WindowText) == readable) return;
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
      colors.setColor(QPalette::Disabled, role, readable);
    }
    setPalette(colors);
  }

  void addItem(const MenuItem& item) {
    if (item.isSeparator) {
      addSeparator();
      return;
    }
    auto title = QString::fromStdString(item.title);
    auto* const action = addAction(title.replace('&', "&&"));
    action->setEnabled(item.isEnabled);
    if (!item.keyEquivalent.empty()) {
      action->setShortcut(QKeySequence("Ctrl+" + QString::fromStdString(item.keyEquivalent)));
    }
    if (item.action) QObject::connect(action, &QAction::triggered, action, item.action);
  }
};

class QtStatusItem : public StatusItem {
 public:
  QtStatusItem(Log& log, std::function<std::optional<SystemTray>()> oldTray)
      : oldTray_(std::move(oldTray)),
        hostWatcher_(hostName, QDBusConnection::sessionBus(),
                     QDBusServiceWatcher::WatchForRegistration) {
    QObject::connect(&menu_, &QMenu::aboutToShow, &menu_, [this] { rebuildMenu(); });
    QObject::connect(&trayCheck_, &QTimer::timeout, &menu_, [this] { showWhereTrayIs(); });
    QObject::connect(&hostWatcher_, &QDBusServiceWatcher::serviceRegistered, &menu_,
                     [this] { showWhereTrayIs(); });
    showWhereTrayIs();
    if (icon_) return;
    log.log("Kivra: области уведомлений нет, значок появится вместе с ней");
    trayCheck_.start(trayCheckInterval);
  }

  void setButtonImage(const std::string& symbol,
                      const std::string& accessibilityDescription) override {
    symbol_ = symbol;
    description_ = QString::fromStdString(accessibilityDescription);
    update();
  }

  void setAppearsDisabled(bool disabled) override {
    appearsDisabled_ = disabled;
    update();
  }

  void setMenu(std::function<std::vector<MenuItem>()> menuNeedsUpdate) override {
    menuNeedsUpdate_ = std::move(menuNeedsUpdate);
    rebuildMenu();  // a tray that draws the menu itself asks for it before it opens
  }

 private:
  // Qt decides once, when it is first asked for an icon, which kind of tray the session has.
  void showWhereTrayIs() {
    if (icon_) return;
    look_.drawsNames = hasHost();
    if (!look_.drawsNames) {
      const auto tray = oldTray_();
      if (!tray) return;
      if (tray->foreground) look_.foreground = QColor::fromRgb(*tray->foreground);
    }
    trayCheck_.stop();
    icon_.emplace();
    QObject::connect(&*icon_, &QSystemTrayIcon::activated, &menu_,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                       if (reason == QSystemTrayIcon::Trigger) menu_.popup(QCursor::pos());
                     });
    icon_->setContextMenu(&menu_);
    update();
  }

  void update() {
    if (!icon_ || !hasSymbol(symbol_)) return;
    icon_->setToolTip(description_);
    icon_->setIcon(trayIcon(symbol_, appearsDisabled_, look_));
    icon_->show();
  }

  void rebuildMenu() {
    if (menuNeedsUpdate_) menu_.setItems(menuNeedsUpdate_());
  }

  std::function<std::optional<SystemTray>()> oldTray_;
  TrayLook look_;
  std::string symbol_;
  QString description_;
  bool appearsDisabled_ = false;
  std::function<std::vector<MenuItem>()> menuNeedsUpdate_;
  StatusMenu menu_;
  std::optional<QSystemTrayIcon> icon_;  ///< once there is a tray
  QTimer trayCheck_;
  QDBusServiceWatcher hostWatcher_;
};

}  // namespace

std::unique_ptr<StatusItem> QtStatusBar::statusItem(double /*length*/) {
  return std::make_unique<QtStatusItem>(log_, oldTray_);
}

}  // namespace kivra::qt
