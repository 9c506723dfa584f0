// The program as its user meets it: the status item, the windows, what they change at once.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "open_settings.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

TEST(WholeProgram, ItemComesWithALateTrayAndItsMenuEndsTheProgram) {
  XSession session;
  session.startKivra();
  EXPECT_NE(session.kivraLog().find("области уведомлений нет"), std::string::npos);
  const TrayHost host(busOf(session));
  host.waitForItem();
  EXPECT_EQ(host.title(), "Kivra");
  EXPECT_EQ(labels(host), (std::vector<std::string>{
                              "Выключить Kivra", "", "Перехват клавиатуры: работает ✓",
                              "Разрешения выданы ✓", "", "Настройки…", "", "Завершить Kivra"}));
  host.choose("Завершить Kivra");
  EXPECT_EQ(session.kivra().wait(5s), 0) << session.kivraLog();
}

TEST(WholeProgram, ItemComesWithALateTrayOfTheOldKind) {
  XSession session;
  session.startKivra();
  const auto items = [&] {
    return session.run({"xdotool", "search", "--onlyvisible", "--class", "kivra"});
  };
  EXPECT_EQ(items(), "");
  const auto tray = session.start({"trayer"});
  EXPECT_TRUE(waitFor([&] { return !items().empty(); })) << session.kivraLog();
}

TEST(WholeProgram, WindowComesToTheFrontWhateverIsThere) {
  OpenSettings desktop;
  const auto isInFront = [&] {
    return desktop.session.run({"xdotool", "getactivewindow", "getwindowname"}) ==
           "Kivra — настройки\n";
  };
  EXPECT_TRUE(waitFor(isInFront));
  desktop.returnToEditor();
  desktop.typist.type("word ");
  EXPECT_EQ(desktop.window.textAfter("word "), "word ");
  EXPECT_FALSE(isInFront());
  desktop.host.choose("Настройки…");
  EXPECT_TRUE(waitFor(isInFront));
}

TEST(WholeProgram, SwitchingOffAndOnCountsAtOnce) {
  OpenSettings desktop;
  const auto typed = [&](const char* expected) {
    desktop.returnToEditor();
    desktop.typist.selectGroup(0);
    desktop.typist.type("ghbdtn ");
    return desktop.window.textAfter(expected);
  };
  desktop.host.choose("Выключить Kivra");
  EXPECT_TRUE(waitFor([&] { return labels(desktop.host).at(0) == "Включить Kivra"; }));
  EXPECT_EQ(typed("ghbdtn "), "ghbdtn ");
  desktop.reader.press(desktop.reader.waitFor("check box", "Включить Kivra"));
  EXPECT_TRUE(waitFor([&] { return labels(desktop.host).at(0) == "Выключить Kivra"; }));
  EXPECT_EQ(typed("привет "), "привет ");
}

TEST(WholeProgram, ReplacementAddedCountsAtTheNextWord) {
  OpenSettings desktop;
  desktop.showTab("База");
  const auto& reader = desktop.reader;
  reader.setText(reader.waitFor("text", "Что набрано (любая раскладка: мучщк или vexor)"), "zxq");
  reader.setText(reader.waitFor("text", "На что заменить (например VEXOR)"), "works");
  reader.press(reader.waitFor("push button", "Добавить"));
  reader.waitFor("push button", "Удалить «zxq»");
  desktop.returnToEditor();
  desktop.typist.type("zxq ");
  EXPECT_EQ(desktop.window.textAfter("works "), "works ");
}

TEST(WholeProgram, RecordedHotkeyCountsAtTheNextPress) {
  OpenSettings desktop;
  desktop.showTab("Хоткеи");
  constexpr auto row = "Ручное переключение раскладки";
  const auto label = [&] { return desktop.reader.waitFor("push button", row).description; };
  EXPECT_EQ(label(), "Ctrl+Alt+P");
  desktop.reader.press(desktop.reader.waitFor("push button", row));
  EXPECT_TRUE(waitFor([&] { return label() == "Нажми комбинацию… (Esc отмена)"; })) << label();
  desktop.activate();
  desktop.typist.chord({keys::control, keys::shift, keys::p});
  EXPECT_TRUE(waitFor([&] { return label() == "Ctrl+Shift+P"; })) << label();
  desktop.returnToEditor();
  desktop.typist.type("fg");
  desktop.typist.chord({keys::control, keys::shift, keys::p});
  EXPECT_EQ(desktop.window.textAfter("ап"), "ап");
}

/// A session without accessibility, where the permissions window has come up.
struct WithoutAccessibility {
  explicit WithoutAccessibility(const std::string& desktop = "") {
    auto environment = session.environment();
    environment["XDG_CURRENT_DESKTOP"] = desktop;
    environment["PATH"] = session.path("bin").string() + ":" + environment["PATH"];
    kivra = std::make_unique<ChildProcess>(
        std::vector<std::string>{KIVRA_PROGRAM},
        ChildProcess::Options{.environment = environment, .outputFile = session.path("kivra.log")});
    EXPECT_TRUE(waitFor([this] { return isWindowOpen(); })) << session.kivraLog();
  }

  bool isWindowOpen() {
    return !session.run({"xdotool", "search", "--onlyvisible", "--name", "разрешения"}).empty();
  }

  void expectToBeInOrder() {
    EXPECT_TRUE(waitFor([this] { return !isWindowOpen(); }));
    EXPECT_TRUE(waitFor([this] { return session.isKeyboardHeld(); }));
  }

  XSession session{{.accessibility = false}};
  std::unique_ptr<ChildProcess> kivra;
};

/// Puts a program of this name before all others; it notes what it was given.
void standIn(const XSession& session, const std::string& name) {
  std::filesystem::create_directories(session.path("bin"));
  const auto program = session.path("bin") / name;
  std::ofstream(program) << "#!/bin/sh\necho \"$0 $*\" >>" << session.path("opened") << "\n";
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
}

/// What the last button but that for the details opens on a desktop of this name.
std::string openedOn(const std::string& desktop) {
  WithoutAccessibility running(desktop);
  auto& session = running.session;
  for (const auto* name : {"xdg-open", "gnome-control-center"}) standIn(session, name);
  session.run({"xdotool", "search", "--sync", "--name", "разрешения", "windowactivate", "--sync"});
  session.run({"xdotool", "key", "shift+Tab", "shift+Tab", "space"});
  EXPECT_TRUE(waitFor([&] { return session.readFile("opened").ends_with("\n"); }))
      << session.kivraLog();
  return session.readFile("opened").substr((session.path("bin").string() + "/").size());
}

TEST(WholeProgram, PermissionsWindowClosesWhenAllIsGranted) {
  WithoutAccessibility desktop;
  desktop.session.switchAccessibilityOn();
  desktop.expectToBeInOrder();
}

TEST(WholeProgram, PermissionsWindowSwitchesAccessibilityOn) {
  WithoutAccessibility desktop;
  desktop.session.run({"xdotool", "search", "--sync", "--name", "разрешения", "windowactivate"});
  // By the keyboard, one control after the other: the request is among them.
  waitFor([&] {
    desktop.session.run({"xdotool", "key", "Tab", "space"});
    return !desktop.isWindowOpen();
  });
  desktop.expectToBeInOrder();
}

TEST(WholeProgram, PermissionsWindowOpensTheSettingsOfTheDesktop) {
  EXPECT_EQ(openedOn("ubuntu:GNOME"), "gnome-control-center universal-access\n");
}

TEST(WholeProgram, PermissionsWindowOpensTheHelpWhereTheDesktopHasNoPage) {
  const auto opened = openedOn("");
  constexpr std::string_view before = "xdg-open file://";
  const auto end = opened.find("#Privacy_Accessibility\n");
  ASSERT_TRUE(opened.starts_with(before) && end != std::string::npos) << opened;
  const auto file = opened.substr(before.size(), end - before.size());
  EXPECT_TRUE(std::filesystem::exists(file)) << file;
}

/// Expects every control that shows to have a name, and those that are used to take the focus;
/// answers how many there are of these.
std::size_t checkControls(const ScreenReader& reader, const std::string& where) {
  const std::vector<std::string> used = {"push button", "check box",     "combo box",
                                         "text",        "password text", "page tab"};
  std::size_t count = 0;
  for (const auto& control : reader.controls()) {
    const auto isUsed = std::ranges::find(used, control.role) != used.end();
    if (!control.isShowing || (!isUsed && control.role != "graphic" && control.role != "label")) {
      continue;
    }
    EXPECT_FALSE(control.name.empty()) << where << ": a " << control.role;
    if (!isUsed) continue;
    ++count;
    if (control.role == "page tab") continue;  // the bar of tabs takes the focus for them
    EXPECT_TRUE(control.isFocusable) << where << ": " << control.role << " " << control.name;
  }
  return count;
}

TEST(WholeProgram, EveryControlOfTheSettingsHasANameAndTakesTheFocus) {
  OpenSettings desktop;
  for (const auto* tab : {"Общие", "Перевод", "База", "Хоткеи"}) {
    desktop.showTab(tab);
    EXPECT_GT(checkControls(desktop.reader, tab), 5U) << tab;
  }
}

TEST(WholeProgram, EveryControlOfThePermissionsHasANameAndTakesTheFocus) {
  XSession session({.server = {.arguments = {"-extension", "XTEST"}}});
  const auto kivra = session.start({KIVRA_PROGRAM}, "kivra.log");
  const ScreenReader reader(busOf(session), "Kivra");
  for (const auto* button :
       {"Запросить (Input Monitoring)", "Настройки системы… (Input Monitoring)", "Подробнее…"}) {
    reader.waitFor("push button", button);
  }
  EXPECT_EQ(checkControls(reader, "permissions"), 3U);
  for (const auto* state : {"Выдано", "Не выдано"}) reader.waitFor("graphic", state);
}

}  // namespace
}  // namespace kivra::e2e
