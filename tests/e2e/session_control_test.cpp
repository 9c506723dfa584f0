// The running program as others in the session reach it: a second start, kivractl, the bus.

#include <gtest/gtest.h>

#include <fstream>
#include <mutex>

#include "bus_client.h"
#include "bus_service.h"
#include "child_process.h"
#include "test_window.h"
#include "x_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

/// A session in which Kivra runs and answers on the bus.
class ControlledSession {
 public:
  ControlledSession() : kivra_(session.start({KIVRA_PROGRAM}, "kivra.log")) {
    // Nobody but a running program knows them.
    EXPECT_TRUE(waitFor([this] { return control("layouts").second == 0; }, 30s));
  }

  /// What kivractl prints, errors as well, and its exit status.
  std::pair<std::string, int> control(const std::string& arguments) {
    return shell(KIVRACTL " " + arguments);
  }

  std::pair<std::string, int> shell(const std::string& command) {
    auto output = session.run({"sh", "-c", "cd \"$HOME\"; " + command + " 2>&1; echo $?"});
    output.pop_back();
    const auto last = output.rfind('\n') + 1;
    const auto status = std::stoi(output.substr(last));
    output.resize(last);
    return {output, status};
  }

  ChildProcess& kivra() { return *kivra_; }

  XSession session;

 private:
  std::unique_ptr<ChildProcess> kivra_;
};

bool isSettingsWindowOpen(XSession& session) {
  return !session.run({"xdotool", "search", "--onlyvisible", "--name", "Kivra — настройки"})
              .empty();
}

TEST(SessionControl, SecondStartOpensTheSettingsOfTheFirst) {
  ControlledSession desktop;
  auto& session = desktop.session;
  EXPECT_FALSE(isSettingsWindowOpen(session));
  const auto second = session.start({KIVRA_PROGRAM}, "second.log");
  EXPECT_EQ(second->wait(10s), 0);
  EXPECT_NE(session.readFile("second.log").find("уже запущен"), std::string::npos);
  EXPECT_TRUE(waitFor([&] { return isSettingsWindowOpen(session); }));
}

TEST(SessionControl, CommandsReachTheRunningProgram) {
  ControlledSession desktop;
  using Outcome = std::pair<std::string, int>;
  EXPECT_EQ(desktop.control("settings"), (Outcome{"", 0}));
  EXPECT_TRUE(waitFor([&] { return isSettingsWindowOpen(desktop.session); }));
  EXPECT_EQ(desktop.control("learned add Севодня"), (Outcome{"", 0}));
  EXPECT_EQ(desktop.control("learned"), (Outcome{"севодня\n", 0}));
  const auto enabled = [&] { return desktop.shell(KIVRA_DEFAULTS " read kivra.isEnabled").first; };
  EXPECT_EQ(desktop.control("pause 2s"), (Outcome{"", 0}));
  EXPECT_EQ(enabled(), "0\n");
  EXPECT_TRUE(waitFor([&] { return enabled() == "1\n"; }));
  EXPECT_EQ(desktop.control("dictionary import - --dry-run </dev/null"),
            (Outcome{"0 entries would be added, 0 would be changed\n", 0}));
  EXPECT_EQ(desktop.control("dictionary import nowhere.tsv").second, 1);
  EXPECT_EQ(desktop.control("fly").second, 2);
  EXPECT_EQ(desktop.control("quit"), (Outcome{"", 0}));
  EXPECT_EQ(desktop.kivra().wait(10s), 0) << desktop.session.kivraLog();
  EXPECT_EQ(desktop.control("quit").second, 3);
}

/// The lines of the blocks for a shell under a heading.
std::vector<std::string> commandsUnder(const std::string& file, const std::string& heading) {
  std::ifstream stream(file);
  std::vector<std::string> commands;
  bool isUnder = false;
  bool isBlock = false;
  for (std::string line; std::getline(stream, line);) {
    if (line.starts_with("## ")) isUnder = line == heading;
    if (line.starts_with("```")) {
      isBlock = isUnder && line == "```sh";
    } else if (isBlock) {
      commands.push_back(line);
    }
  }
  return commands;
}

TEST(SessionControl, DailyTasksWorkAsTheReadmePrintsThem) {
  for (const auto& [file, heading] :
       {std::pair("README.md", "## Every day"), std::pair("README.ru.md", "## Каждый день")}) {
    ControlledSession desktop;
    const TestWindow window(desktop.session.display());
    const auto commands = commandsUnder(std::string(KIVRA_SOURCES) + "/" + file, heading);
    EXPECT_GE(commands.size(), 10U) << file;
    for (const auto& command : commands) {
      const auto [output, status] = desktop.shell("PATH=$(dirname " KIVRACTL "):$PATH; " + command);
      EXPECT_EQ(status, 0) << file << ": " << command << '\n' << output;
    }
  }
}

/// A desktop that shows notifications.
class Notifications {
 public:
  explicit Notifications(const std::string& address)
      : client_(address),
        service_(client_, {"org.freedesktop.Notifications", "/org/freedesktop/Notifications"},
                 R"(<node><interface name="org.freedesktop.Notifications"><method name="Notify">
<arg type="s"/><arg type="u"/><arg type="s"/><arg type="s"/><arg type="s"/><arg type="as"/>
<arg type="a{sv}"/><arg type="i"/><arg type="u" direction="out"/></method></interface></node>)",
                 table, this) {}

  std::string body() {
    const std::lock_guard lock(mutex_);
    return body_;
  }

 private:
  static void onCall(GDBusConnection*, const char*, const char*, const char*, const char*,
                     GVariant* arguments, GDBusMethodInvocation* invocation, gpointer self) {
    auto& shown = *static_cast<Notifications*>(self);
    const char* body = nullptr;
    g_variant_get_child(arguments, 4, "&s", &body);
    {
      const std::lock_guard lock(shown.mutex_);
      shown.body_ = body;
    }
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(u)", 1U));
  }
  static constexpr GDBusInterfaceVTable table = {onCall, nullptr, nullptr, {}};

  std::mutex mutex_;
  std::string body_;
  BusClient client_;
  BusService service_;
};

TEST(SessionControl, TellsHowToReachTheSettingsWithoutATray) {
  XSession session;
  Notifications shown(session.environment().at("DBUS_SESSION_BUS_ADDRESS"));
  const auto kivra = session.start({KIVRA_PROGRAM}, "kivra.log");
  EXPECT_TRUE(waitFor([&] { return !shown.body().empty(); }, 30s));
  EXPECT_NE(shown.body().find("kivractl settings"), std::string::npos) << shown.body();
}

}  // namespace
}  // namespace kivra::e2e
