// Sessions in which the program cannot do its work, or not all of it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "kivra_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

bool logs(const XSession& session, const std::string& text) {
  return waitFor([&] { return session.kivraLog().find(text) != std::string::npos; });
}

std::unique_ptr<ChildProcess> startWaiting(XSession& session) {
  return session.start({KIVRA_PROGRAM}, "kivra.log");
}

TEST(BadSession, NoServer) {
  XSession session({.windowManager = false});
  auto environment = session.environment();
  environment.erase("DISPLAY");
  ChildProcess kivra({KIVRA_PROGRAM},
                     {.environment = environment, .outputFile = session.path("kivra.log")});
  EXPECT_EQ(kivra.wait(10s), EXIT_FAILURE);
  EXPECT_TRUE(logs(session, "нет дисплея: ни DISPLAY, ни WAYLAND_DISPLAY"));
  environment["DISPLAY"] = ":987";
  ChildProcess other({KIVRA_PROGRAM},
                     {.environment = environment, .outputFile = session.path("kivra.log")});
  EXPECT_EQ(other.wait(10s), EXIT_FAILURE);
  EXPECT_TRUE(logs(session, "X-сервер :987 не отвечает"));
}

TEST(BadSession, WaylandOnly) {
  XSession session({.windowManager = false});
  auto environment = session.environment();
  environment.erase("DISPLAY");
  environment["WAYLAND_DISPLAY"] = "wayland-0";
  ChildProcess kivra({KIVRA_PROGRAM},
                     {.environment = environment, .outputFile = session.path("kivra.log")});
  EXPECT_TRUE(logs(session, "Wayland"));
}

TEST(BadSession, ServerWithoutAnExtension) {
  XSession session({.windowManager = false, .server = {.arguments = {"-extension", "XTEST"}}});
  const auto kivra = startWaiting(session);
  EXPECT_TRUE(logs(session, "X-сервер не умеет: XTEST"));
  EXPECT_FALSE(kivra->wait(100ms).has_value());
}

TEST(BadSession, ServerWithoutTestingExtensions) {
  XSession session({.windowManager = false, .server = {.arguments = {"-tst"}}});
  const auto kivra = startWaiting(session);
  EXPECT_TRUE(logs(session, "X-сервер не умеет: XTEST"));
  EXPECT_FALSE(kivra->wait(100ms).has_value());
}

TEST(BadSession, StartsByItselfOnceAccessibilityIsOn) {
  XSession session({.accessibility = false});
  const auto kivra = startWaiting(session);
  EXPECT_TRUE(logs(session, "AT-SPI"));
  EXPECT_FALSE(session.isKeyboardHeld());
  session.switchAccessibilityOn();
  EXPECT_TRUE(waitFor([&] { return session.isKeyboardHeld(); }));
}

TEST(BadSession, NoRussianLayout) {
  XSession session({.layouts = "us,de"});
  session.startKivra();
  EXPECT_TRUE(logs(session, "нет раскладки языка ru"));
  TestWindow window(session.display());
  Typist typist(session);
  typist.type("ghbdtn ");
  EXPECT_EQ(window.textAfter("ghbdtn "), "ghbdtn ");
}

TEST(BadSession, OneOfManyInstancesStays) {
  XSession session;
  std::vector<std::unique_ptr<ChildProcess>> started;
  for (int i = 0; i < 4; ++i) {
    const auto log = session.path("started" + std::to_string(i));
    started.push_back(std::make_unique<ChildProcess>(
        std::vector<std::string>{KIVRA_PROGRAM},
        ChildProcess::Options{.environment = session.environment(), .outputFile = log}));
  }
  const auto running = [&] {
    return std::ranges::count_if(started, [](auto& one) { return !one->wait(0ms); });
  };
  EXPECT_TRUE(waitFor([&] { return running() == 1; }, 20s)) << running();
  const auto stays = std::ranges::find_if(started, [](auto& one) { return !one->wait(0ms); });
  ASSERT_NE(stays, started.end());
  const auto line = "Kivra: уже запущен (pid [" + std::to_string((*stays)->pid()) + "]), выходим";
  for (std::size_t i = 0; i < started.size(); ++i) {
    if (started[i] == *stays) continue;
    EXPECT_EQ(started[i]->wait(0ms), 0);
    EXPECT_NE(session.readFile("started" + std::to_string(i)).find(line), std::string::npos);
  }
  EXPECT_TRUE(waitFor([&] { return session.isKeyboardHeld(); }));
}

TEST(BadSession, SecondInstanceLeavesWithoutABus) {
  XSession session;
  auto environment = session.environment();
  environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nowhere";
  const ChildProcess first({KIVRA_PROGRAM},
                           {.environment = environment, .outputFile = session.path("kivra.log")});
  EXPECT_TRUE(logs(session, "AT-SPI"));
  ChildProcess second({KIVRA_PROGRAM},
                      {.environment = environment, .outputFile = session.path("second.log")});
  EXPECT_EQ(second.wait(10s), 0);
  const auto pid = std::to_string(first.pid());
  EXPECT_NE(session.readFile("second.log").find("уже запущен (pid [" + pid + "])"),
            std::string::npos);
}

}  // namespace
}  // namespace kivra::e2e
