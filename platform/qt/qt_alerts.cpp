#include "platform/qt/qt_alerts.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace kivra::qt {

int QtAlerts::runModal(const Alert& alert) {
  QMessageBox box;
  box.setTextFormat(Qt::PlainText);
  box.setIcon(QMessageBox::Information);
  box.setText(QString::fromStdString(alert.messageText));
  box.setInformativeText(QString::fromStdString(alert.informativeText));
  QList<QPushButton*> buttons;
  for (const auto& title : alert.buttons) {
    // One role for all keeps them in their order.
    buttons.append(box.addButton(QString::fromStdString(title), QMessageBox::ActionRole));
  }
  if (buttons.isEmpty()) buttons.append(box.addButton(QMessageBox::Ok));
  box.setDefaultButton(buttons.first());
  box.setEscapeButton(buttons.last());
  // What asked for the answer stands still until it comes: the box must not get out of sight.
  box.setWindowFlag(Qt::WindowStaysOnTopHint);
  QTimer::singleShot(0, &box, [this, &box] {
    if (box.isVisible()) bringToFront(box, activate_);  // not answered yet
  });
  box.exec();
  for (qsizetype i = 0; i < buttons.size(); ++i) {
    if (box.clickedButton() == buttons[i]) return alertFirstButtonReturn + static_cast<int>(i);
  }
  return alertFirstButtonReturn + static_cast<int>(buttons.size() - 1);
}

void QtAlerts::beep() { QApplication::beep(); }

}  // namespace kivra::qt
