// The end of the session, however it comes: the program leaves, and nothing stored is lost.

#include <gtest/gtest.h>

#include <csignal>

#include "kivra_session.h"
#include "screen_reader.h"
#include "session_manager.h"
#include "tray_host.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

/// A session in which Kivra has just been switched off by its menu.
struct ChangedSettings {
  explicit ChangedSettings(Environment more = {}) {
    auto environment = session.environment();
    environment.merge(more);
    kivra = std::make_unique<ChildProcess>(
        std::vector<std::string>{KIVRA_PROGRAM},
        ChildProcess::Options{.environment = environment, .outputFile = session.path("kivra.log")});
  }

  /// Leaves its settings window open, with a text begun.
  void change() {
    EXPECT_TRUE(waitFor([&] { return session.isKeyboardHeld(); }, 20s));
    const auto& bus = session.environment().at("DBUS_SESSION_BUS_ADDRESS");
    const TrayHost host(bus);
    host.waitForItem();
    host.choose("Настройки…");
    const ScreenReader reader(bus, "Kivra");
    reader.press(reader.waitFor("page tab", "База"));
    const auto field = "Что набрано (любая раскладка: мучщк или vexor)";
    reader.setText(reader.waitFor("text", field), "begun");
    host.choose("Выключить Kivra");
    EXPECT_TRUE(waitFor([&] { return host.menu().at(0).label == "Включить Kivra"; }));
  }

  std::string stored() { return session.run({KIVRA_DEFAULTS, "read", "kivra.isEnabled"}); }

  XSession session;
  std::unique_ptr<ChildProcess> kivra;
};

TEST(SessionEnd, LogoutEndsTheProgramWithoutAQuestion) {
  SessionManager manager;
  ChangedSettings desktop({{"SESSION_MANAGER", manager.address()}});
  ASSERT_TRUE(manager.waitForProgram());
  desktop.change();
  EXPECT_TRUE(manager.logOut());
  EXPECT_FALSE(manager.wasHeldUp());
  EXPECT_EQ(desktop.kivra->wait(5s), 0);
  EXPECT_EQ(desktop.stored(), "0\n");
}

TEST(SessionEnd, TerminationLosesNothing) {
  ChangedSettings desktop;
  desktop.change();
  desktop.kivra->signal(SIGTERM);
  EXPECT_EQ(desktop.kivra->wait(5s), 0);
  EXPECT_EQ(desktop.stored(), "0\n");
}

TEST(SessionEnd, LostServerLosesNothing) {
  ChangedSettings desktop;
  desktop.change();
  desktop.session.killServer();
  EXPECT_EQ(desktop.kivra->wait(5s), 1);
  EXPECT_EQ(desktop.stored(), "0\n");
}

TEST(SessionEnd, ProgramOutlivesTheBusAndLeavesInGoodOrder) {
  ChangedSettings desktop;
  desktop.change();
  desktop.session.killBus();
  EXPECT_FALSE(desktop.kivra->wait(500ms).has_value());
  desktop.kivra->signal(SIGTERM);
  EXPECT_EQ(desktop.kivra->wait(5s), 0);
  EXPECT_EQ(desktop.stored(), "0\n");
}

}  // namespace
}  // namespace kivra::e2e
