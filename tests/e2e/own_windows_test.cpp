// What the program does with keys in its own windows, and what it says where it cannot work.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "notification_server.h"
#include "open_settings.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

constexpr auto prompt = "Нажми комбинацию… (Esc отмена)";
constexpr auto secondTranslation = "Перевод №2";

/// The settings with the hotkeys in front.
struct Recording : OpenSettings {
  explicit Recording(const XSession::Options& options = {}) : OpenSettings(options) {
    showTab("Хоткеи");
  }

  std::string label() { return reader.waitFor("push button", secondTranslation).description; }

  void begin() {
    reader.press(reader.waitFor("push button", secondTranslation));
    EXPECT_TRUE(waitFor([&] { return label() == prompt; })) << label();
    activate();
  }

  /// The label's first part: behind it may stand whose keys they are.
  bool isRecorded(const std::string& hotkey) {
    return waitFor([&] { return label().starts_with(hotkey); });
  }

  NotificationServer notifications{busOf(session)};
};

TEST(OwnWindows, AHotkeyInUseIsRecordedAndDoesNothingElse) {
  Recording desktop;
  desktop.begin();
  desktop.typist.chord("ctrl+alt+p");
  EXPECT_TRUE(desktop.isRecorded("Ctrl+Alt+P")) << desktop.label();
  const auto told = desktop.notifications.waitFor(1);
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0].title, "Ctrl+Alt+P уже занято");
  EXPECT_NE(told[0].text.find("Ручное переключение раскладки"), std::string::npos);
  EXPECT_NE(desktop.label().find("Ручное переключение раскладки"), std::string::npos);
}

TEST(OwnWindows, AKeyWithoutACharacterIsRecordedByItsName) {
  Recording desktop;
  constexpr std::uint8_t insert = 118;
  desktop.begin();
  desktop.typist.chord({keys::control, insert});
  EXPECT_TRUE(desktop.isRecorded("Ctrl+Insert")) << desktop.label();
}

TEST(OwnWindows, AKeyThatAnotherProgramHasGrabbedIsToldOf) {
  Recording desktop;
  constexpr std::uint8_t f9 = 75;
  auto* const display = XOpenDisplay(desktop.session.display().c_str());
  XGrabKey(display, f9, ControlMask, DefaultRootWindow(display), 0, GrabModeAsync, GrabModeAsync);
  XSync(display, 0);
  desktop.begin();
  desktop.typist.chord({keys::control, f9});
  EXPECT_TRUE(desktop.isRecorded("Ctrl+F9")) << desktop.label();
  const auto told = desktop.notifications.waitFor(1);
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0].title, "Ctrl+F9 уже занято");
  EXPECT_NE(told[0].text.find("другой программы"), std::string::npos);
  XCloseDisplay(display);
}

TEST(OwnWindows, KeysThatSwitchTheLayoutOrHoldAnotherAreNotRecorded) {
  Recording desktop({.xkbOptions = "grp:alt_shift_toggle,lv3:ralt_switch"});
  constexpr std::uint8_t menu = 135;
  constexpr std::uint8_t altGr = 108;
  constexpr std::uint8_t e = 26;
  desktop.begin();
  desktop.typist.chord({keys::alt, keys::shift});
  desktop.typist.chord({keys::control, menu});
  desktop.typist.chord({keys::control, altGr});
  EXPECT_EQ(desktop.label(), prompt);
  // As it counts where the hotkey is used.
  desktop.typist.chord({keys::control, altGr, e});
  EXPECT_TRUE(desktop.isRecorded("Ctrl+Alt+E")) << desktop.label();
}

TEST(OwnWindows, WhatIsTypedIntoThemIsLeftAlone) {
  OpenSettings desktop;
  desktop.showTab("База");
  const auto& reader = desktop.reader;
  desktop.activate();
  const auto write = [&](const char* field, const char* keys) {
    ASSERT_TRUE(reader.focus(reader.waitFor("text", field)));
    desktop.typist.selectGroup(1);
    desktop.typist.type(keys);
    desktop.typist.tap(keys::tab);
  };
  write("Что набрано (любая раскладка: мучщк или vexor)", "ctdjlyz");
  write("На что заменить (например VEXOR)", "ctuj");
  const auto add = reader.waitFor("push button", "Добавить");
  EXPECT_TRUE(waitFor([&] {
    reader.press(add);
    return std::ranges::any_of(
        reader.controls(), [](const auto& control) { return control.name == "Удалить «севодня»"; });
  }));
}

TEST(OwnWindows, TheyAreFramesWithGroupsAndLists) {
  OpenSettings desktop;
  desktop.showTab("База");
  desktop.reader.waitFor("frame", "Kivra — настройки");
  desktop.reader.waitFor("panel", "Новая запись");
  desktop.reader.waitFor("list", "Записи (3)");
  desktop.reader.waitFor("list item", "ios");
}

TEST(OwnWindows, OneOpenedBeforeAccessibilityWasSwitchedOnIsHeardOfAfterwards) {
  XSession session({.accessibility = false, .server = {.arguments = {"-extension", "XTEST"}}});
  const auto kivra = session.start({KIVRA_PROGRAM}, "kivra.log");
  EXPECT_TRUE(waitFor([&] {
    return !session.run({"xdotool", "search", "--onlyvisible", "--name", "разрешения"}).empty();
  }));
  session.switchAccessibilityOn();
  const ScreenReader reader(busOf(session), "Kivra");
  reader.waitFor("push button", "Запросить (Input Monitoring)");
}

TEST(OwnWindows, AHotkeyWithNothingToWorkOnSaysSo) {
  KivraSession desktop;
  NotificationServer notifications(busOf(desktop.session));
  desktop.typist.chord("ctrl+alt+e");
  const auto told = notifications.waitFor(1);
  ASSERT_EQ(told.size(), 1U) << desktop.session.kivraLog();
  EXPECT_EQ(told[0].title, "Нет текста");
}

bool hasEntry(const TrayHost& host, const std::string& label) {
  return waitFor([&] {
    const auto all = labels(host);
    return std::ranges::find(all, label) != all.end();
  });
}

TEST(OwnWindows, TheMenuSaysWhichLayoutIsMissing) {
  XSession session({.layouts = "us"});
  const TrayHost host(busOf(session));
  session.startKivra();
  host.waitForItem();
  EXPECT_TRUE(hasEntry(host, "Нет русской раскладки: добавьте и перезапустите Kivra"));
  EXPECT_TRUE(hasEntry(host, "Перехват клавиатуры: работает ✓"));
}

TEST(OwnWindows, TheMenuSaysThatTheGuardIsGone) {
  XSession session;
  const TrayHost host(busOf(session));
  const auto program = session.path("kivra");
  std::filesystem::copy_file(KIVRA_PROGRAM, program);
  const auto kivra = session.start({program.string()}, "kivra.log");
  host.waitForItem();
  EXPECT_TRUE(hasEntry(host, "Сторож клавиатуры не работает: перезапустите Kivra"));
}

TEST(OwnWindows, AnXServerOfAWaylandSessionIsNotTakenForOne) {
  XSession session;
  Typist(session).addMasterDevices("xwayland-test");
  const TrayHost host(busOf(session));
  const auto kivra = session.start({KIVRA_PROGRAM}, "kivra.log");
  const ScreenReader reader(busOf(session), "Kivra");
  reader.waitFor("label",
                 "Клавиатуру не видно: в сеансе Wayland окна не показывают нажатий другим "
                 "программам; войдите в сеанс X11 (Xorg)");
  host.waitForItem();
  EXPECT_TRUE(hasEntry(host, "Клавиатуру не видно: сеанс Wayland: войдите в сеанс X11 (Xorg)"));
}

}  // namespace
}  // namespace kivra::e2e
