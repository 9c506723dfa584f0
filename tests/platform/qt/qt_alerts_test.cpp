#include "platform/qt/qt_alerts.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace kivra::qt {
namespace {

int answered(void (*answer)(QMessageBox& box)) {
  QTimer::singleShot(
      0, [answer] { answer(*qobject_cast<QMessageBox*>(QApplication::activeModalWidget())); });
  return QtAlerts().runModal({.messageText = "Нужен <b>ключ</b>",
                              .informativeText = "Где его взять",
                              .buttons = {"Открыть настройки…", "Не сейчас", "Позже"}});
}

TEST(QtAlerts, AnswersTheButton) {
  EXPECT_EQ(answered([](QMessageBox& box) { box.buttons().at(0)->click(); }), 1000);
  EXPECT_EQ(answered([](QMessageBox& box) { box.buttons().at(1)->click(); }), 1001);
  EXPECT_EQ(answered([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); }), 1000);
}

TEST(QtAlerts, ClosingIsTheLastButton) {
  EXPECT_EQ(answered([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }), 1002);
  EXPECT_EQ(answered([](QMessageBox& box) { box.close(); }), 1002);
}

}  // namespace
}  // namespace kivra::qt
