#include "platform/qt/qt_status_bar.h"

#include <QAction>
#include <QCursor>
#include <QIcon>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QSystemTrayIcon>
#include <QTimer>
#include <utility>

#include "platform/qt/symbol.h"

namespace kivra::qt {

namespace {

constexpr std::chrono::seconds trayCheckInterval(5);

/// A menu whose key equivalents work while it is open.
class StatusMenu : public QMenu {
 public:
  void setItems(const std::vector<MenuItem>& items) {
    clear();
    for (const auto& item : items) addItem(item);
  }

 protected:
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

/// The icon with less of it: the program is off.
QIcon dimmed(const QIcon& icon) {
  QIcon faint;
  for (const auto& size : icon.availableSizes()) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setOpacity(0.4);
    icon.paint(&painter, pixmap.rect());
    painter.end();
    faint.addPixmap(pixmap);
  }
  return faint;
}

class QtStatusItem : public StatusItem {
 public:
  explicit QtStatusItem(Log& log) {
    QObject::connect(&icon_, &QSystemTrayIcon::activated, &icon_,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                       if (reason == QSystemTrayIcon::Trigger) menu_.popup(QCursor::pos());
                     });
    QObject::connect(&menu_, &QMenu::aboutToShow, &menu_, [this] { rebuildMenu(); });
    icon_.setContextMenu(&menu_);
    QObject::connect(&trayCheck_, &QTimer::timeout, &icon_, [this] { showWhereTrayIs(); });
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
      log.log("Kivra: области уведомлений нет, значок появится вместе с ней");
      trayCheck_.start(trayCheckInterval);
    }
  }

  void setButtonImage(const std::string& symbol,
                      const std::string& accessibilityDescription) override {
    image_ = symbolIcon(symbol);
    icon_.setToolTip(QString::fromStdString(accessibilityDescription));
    applyImage();
    if (!trayCheck_.isActive()) icon_.show();
  }

  void setAppearsDisabled(bool disabled) override {
    appearsDisabled_ = disabled;
    applyImage();
  }

  void setMenu(std::function<std::vector<MenuItem>()> menuNeedsUpdate) override {
    menuNeedsUpdate_ = std::move(menuNeedsUpdate);
    rebuildMenu();  // a tray that draws the menu itself asks for it before it opens
  }

 private:
  void applyImage() { icon_.setIcon(appearsDisabled_ ? dimmed(image_) : image_); }

  void rebuildMenu() {
    if (menuNeedsUpdate_) menu_.setItems(menuNeedsUpdate_());
  }

  void showWhereTrayIs() {
    if (!QSystemTrayIcon::isSystemTrayAvailable()) return;
    trayCheck_.stop();
    icon_.show();
  }

  QIcon image_;
  bool appearsDisabled_ = false;
  std::function<std::vector<MenuItem>()> menuNeedsUpdate_;
  StatusMenu menu_;
  QSystemTrayIcon icon_;
  QTimer trayCheck_;
};

}  // namespace

std::unique_ptr<StatusItem> QtStatusBar::statusItem(double /*length*/) {
  return std::make_unique<QtStatusItem>(log_);
}

}  // namespace kivra::qt
