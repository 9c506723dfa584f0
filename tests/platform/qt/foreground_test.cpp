// Windows that a hotkey asks for, on a private X server whose window manager keeps programs from
// stealing the focus.

#include "platform/qt/foreground.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <cstdlib>

#include "platform/qt/qt_alerts.h"
#include "platform/qt/qt_windows.h"
#include "platform/x11/window_activation.h"
#include "x_session.h"

namespace kivra::qt {
namespace {

e2e::XSession* session = nullptr;

bool isSoon(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 10000); }

std::string hex(WId window) { return "0x" + QString::number(window, 16).toStdString(); }

class ForegroundTest : public testing::Test {
 protected:
  static bool isActive(const std::string& window) {
    // Some managers write a second number behind it.
    const auto active = session->run({"xprop", "-root", "_NET_ACTIVE_WINDOW"});
    const auto found = active.find("# " + window);
    return found != std::string::npos &&
           std::string("\n,").find(active[found + window.size() + 2]) != std::string::npos;
  }

  static bool isAbove(const std::string& upper, const std::string& lower) {
    const auto stack = session->run({"xprop", "-root", "_NET_CLIENT_LIST_STACKING"});
    return stack.find(upper) != std::string::npos && stack.find(upper) > stack.find(lower);
  }

  /// Another program has the focus, and the user is typing there.
  void typeElsewhere() {
    if (!editor_) {
      editor_ = session->start({"zenity", "--entry", "--width=900"});
      EXPECT_TRUE(isSoon([&] {
        rival_ = session->run({"xdotool", "search", "--onlyvisible", "--class", "Zenity"});
        return !rival_.empty();
      }));
      rival_ = hex(static_cast<WId>(std::stoul(rival_)));
    }
    session->run(
        {"xdotool", "windowactivate", "--sync", std::to_string(std::stoul(rival_, nullptr, 16))});
    EXPECT_TRUE(isSoon([&] { return isActive(rival_); }));
    session->run({"xdotool", "type", "words"});
  }

  std::unique_ptr<e2e::ChildProcess> editor_;
  std::string rival_;
};

TEST_F(ForegroundTest, AWindowComesToTheFrontEachTimeItIsAskedFor) {
  QtWindows windows(x11::activateWindow);
  const auto window = windows.windowCreate({.name = "settings",
                                            .title = "Kivra",
                                            .styleMask = window_styles::titled,
                                            .contentSize = WindowSize{300, 200}});
  for (int time = 0; time < 3; ++time) {
    typeElsewhere();
    window->makeKeyAndOrderFront();
    const auto number = hex(QApplication::topLevelWidgets().front()->winId());
    EXPECT_TRUE(isSoon([&] { return isActive(number) && isAbove(number, rival_); }))
        << time << ": " << session->run({"xprop", "-root", "_NET_ACTIVE_WINDOW"});
    if (time == 1) window->close();
  }
}

TEST_F(ForegroundTest, AnAlertIsInFrontUntilItIsAnswered) {
  typeElsewhere();
  auto isInFront = false;
  auto staysInFront = false;
  QTimer::singleShot(0, [&] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    const auto number = hex(box->winId());
    isInFront = isSoon([&] { return isActive(number) && isAbove(number, rival_); });
    typeElsewhere();
    staysInFront = isAbove(number, rival_);
    box->buttons().front()->click();
  });
  EXPECT_EQ(
      QtAlerts(x11::activateWindow)
          .runModal({.messageText = "Нужен ключ", .informativeText = "", .buttons = {"Позже"}}),
      alertFirstButtonReturn);
  EXPECT_TRUE(isInFront);
  EXPECT_TRUE(staysInFront);
}

}  // namespace
}  // namespace kivra::qt

int main(int count, char** values) {
  testing::InitGoogleTest(&count, values);
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  kivra::e2e::XSession session({.windowManager = false, .accessibility = false});
  kivra::qt::session = &session;
  const auto manager = session.start({"metacity"});
  kivra::e2e::waitFor([&] {
    return session.run({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}).find("window id") !=
           std::string::npos;
  });
  for (const auto& [name, value] : session.environment()) ::setenv(name.c_str(), value.c_str(), 1);
  const QApplication application(count, values);
  return RUN_ALL_TESTS();
}
