// Alerts and the run loop as Qt has them, on a screen that nobody sees.

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <thread>

#include "platform/alerts_contract.h"
#include "platform/qt/qt_alerts.h"
#include "platform/qt/qt_run_loop.h"
#include "platform/run_loop_contract.h"

namespace kivra::qt {
namespace {

class QtServices {
 public:
  Alerts& alerts() { return alerts_; }
  void press(const std::string& title) {
    answerNext([title](const QMessageBox& box) {
      for (auto* const button : box.buttons()) {
        if (button->text() == title.c_str()) button->click();
      }
    });
  }
  void close() {
    answerNext([](QMessageBox& box) { box.close(); });
  }
  void hit(Qt::Key key) {
    answerNext([key](QMessageBox& box) { QTest::keyClick(&box, key); });
  }
  Alert shown() const { return shown_; }

  RunLoop& loop() { return loop_; }
  static auto now() { return std::chrono::steady_clock::now(); }
  static void pass(std::chrono::microseconds duration) { std::this_thread::sleep_for(duration); }

 private:
  void answerNext(const std::function<void(QMessageBox&)>& answer) {
    QTimer::singleShot(0, [this, answer] {
      auto& box = *qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      shown_ = {box.text().toStdString(), box.informativeText().toStdString(), {}};
      for (auto* const button : box.buttons()) {
        shown_.buttons.push_back(button->text().toStdString());
      }
      answer(box);
    });
  }

  QtAlerts alerts_;
  Alert shown_;
  QtRunLoop loop_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, AlertsContract, QtServices);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, RunLoopContract, QtServices);

TEST(QtAlerts, AnswerTheKeysOfADialog) {
  QtServices desktop;
  const Alert alert{.messageText = "?", .informativeText = "", .buttons = {"1", "2", "3"}};
  desktop.hit(Qt::Key_Return);
  EXPECT_EQ(desktop.alerts().runModal(alert), 1000);
  desktop.hit(Qt::Key_Escape);
  EXPECT_EQ(desktop.alerts().runModal(alert), 1002);
}

}  // namespace
}  // namespace kivra::qt
