// Keyboards as they are: several, each with a map, locks and lamps of its own, switched off and on,
// held by others, set by others.

#include <gtest/gtest.h>

#include <X11/X.h>

#include "keyboard_desktop.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

constexpr auto first = "keyboard0";
constexpr auto second = "keyboard1";
constexpr std::uint8_t s = 39;

TEST(Keyboards, AreOneWhenUsedByTurns) {
  KeyboardDesktop desktop;
  auto& typist = desktop.typist;
  const auto word = desktop.typed([&] {
    const std::string keys = "ghbdtn hello ";
    for (std::size_t i = 0; i < keys.size(); ++i) {
      typist.use(static_cast<int>(i % 2));
      typist.type(keys.substr(i, 1));
    }
  });
  EXPECT_EQ(word, "привет hello ");
  const auto capital = [&] {
    typist.use(1);
    typist.press(keys::shift);
    typist.use(0);
    typist.tap(keys::a);
    typist.use(1);
    typist.release(keys::shift);
    typist.use(0);
    typist.tap(keys::a);
  };
  EXPECT_EQ(desktop.typed(capital), "Aa");
  const auto sameKey = [&] {
    for (const auto keyboard : {0, 1}) {
      typist.use(keyboard);
      typist.press(keys::a);
    }
    for (const auto keyboard : {0, 1}) {
      typist.use(keyboard);
      typist.release(keys::a);
    }
    typist.use(0);
    typist.type("b");
  };
  const auto with = desktop.typed(sameKey);
  EXPECT_FALSE(typist.isAnyKeyDown());
  desktop.session.stopKivra();
  EXPECT_EQ(with, desktop.typed(sameKey)) << "with and without Kivra";
}

TEST(Keyboards, EachKeepsItsMap) {
  KeyboardDesktop desktop;
  desktop.session.stopKivra();
  desktop.session.run({"setxkbmap", "-device", std::to_string(desktop.devices.id(second)),
                       "-layout", "us,ru", "-variant", "dvorak,"});
  desktop.startKivra();
  const auto byTurns = [&] {
    for (const auto keyboard : {0, 1, 0}) {
      desktop.typist.use(keyboard);
      desktop.typist.tap(s);
      desktop.window.textWhenQuiet(50ms);  // before the map is another one
    }
  };
  EXPECT_EQ(desktop.typed(byTurns), "sos");
  EXPECT_EQ(desktop.typed("ghbdtn "), "привет ");
  desktop.session.stopKivra();
  EXPECT_EQ(desktop.typed(byTurns), "sos");
}

/// Most sessions without a large desktop environment: nobody runs setxkbmap.
TEST(Keyboards, LayoutsOfTheirOwnConfigurationCount) {
  KeyboardDesktop desktop(keyboards(1, "us,ru"));
  EXPECT_EQ(desktop.typed("ghbdtn hello "), "привет hello ");
  desktop.session.stopKivra();
  desktop.typed("a");
  desktop.typist.selectGroup(1);
  desktop.typist.type("b");
  EXPECT_EQ(desktop.window.textAfter("aи"), "aи");
}

TEST(Keyboards, SwitchedOffAndOnTypesEachKeyOnce) {
  KeyboardDesktop desktop;
  desktop.typist.press(keys::backspace);
  desktop.window.textWhenQuiet(20ms);
  desktop.session.run({"xinput", "disable", first});
  EXPECT_TRUE(waitFor([&] { return !desktop.typist.isAnyKeyDown(); }, 2s));
  desktop.typist.leaveFor(1);
  EXPECT_EQ(desktop.typed("ghbdtn "), "привет ");
  desktop.session.run({"xinput", "enable", first});
  EXPECT_TRUE(waitFor([&] { return desktop.session.isKeyboardHeld(); }));
  desktop.typist.use(0, true);
  EXPECT_EQ(desktop.typed("ghbdtn hello "), "привет hello ");
  EXPECT_FALSE(desktop.typist.isAnyKeyDown());
}

TEST(Keyboards, HeldByAnotherProgramIsTakenWhenItLetsGo) {
  KeyboardDesktop desktop;
  desktop.session.stopKivra();
  ASSERT_TRUE(waitFor([&] { return desktop.devices.grab(second); }));
  desktop.startKivra();
  EXPECT_NE(desktop.session.kivraLog().find("клавиатуру удерживает другая программа"),
            std::string::npos);
  EXPECT_EQ(desktop.typed("ghbdtn "), "привет ");
  desktop.devices.letGo(second);
  EXPECT_TRUE(waitFor([&] { return desktop.devices.master(second) == 0; }, 2s));
  desktop.typist.use(1);
  EXPECT_EQ(desktop.typed("ghbdtn hello "), "привет hello ");
}

TEST(Keyboards, OfASecondUserAreLeftAlone) {
  KeyboardDesktop desktop;
  desktop.session.stopKivra();
  desktop.typist.addMasterDevices("second");
  desktop.session.run({"xinput", "reattach", second, "second keyboard"});
  const auto master = desktop.devices.id("second keyboard");
  ASSERT_EQ(desktop.devices.master(second), master);
  desktop.startKivra();
  EXPECT_EQ(desktop.devices.master(second), master);
  EXPECT_EQ(desktop.devices.master(first), 0);
  EXPECT_EQ(desktop.typed("ghbdtn "), "привет ");
}

TEST(Keyboards, KeepWhatIsSetWhileTheyAreHeld) {
  KeyboardDesktop desktop(keyboards(1));
  desktop.session.run({"setxkbmap", "-layout", "us,ru,de", "-variant", ",,"});
  desktop.session.run({"xset", "r", "rate", "300", "40"});
  EXPECT_TRUE(waitFor([&] { return desktop.typed("ghbdtn ") == "привет "; }));
  desktop.session.stopKivra();
  desktop.typed("a");
  desktop.typist.selectGroup(2);
  desktop.typist.type("z");
  EXPECT_EQ(desktop.window.textAfter("ay"), "ay");
  EXPECT_NE(desktop.session.run({"xset", "q"}).find("auto repeat delay:  300    repeat rate:  40"),
            std::string::npos);
}

TEST(Keyboards, LampsShowTheLocks) {
  KeyboardDesktop desktop({.server = {.keyboards = 2}});
  const auto shows = [&](const char* lamp, unsigned int modifier, bool isOn) {
    return waitFor(
        [&] {
          const auto& devices = desktop.devices;
          return devices.isLit(first, lamp) == isOn && devices.isLit(second, lamp) == isOn &&
                 ((devices.locks(first) & modifier) != 0) == isOn;
        },
        2s);
  };
  desktop.typist.tap(keys::capsLock);
  EXPECT_TRUE(shows("Caps Lock", LockMask, true));
  desktop.typist.tap(keys::capsLock);
  EXPECT_TRUE(shows("Caps Lock", LockMask, false));
  desktop.devices.lock(Mod2Mask, true);
  EXPECT_TRUE(shows("Num Lock", Mod2Mask, true)) << "locked by another program";
  desktop.session.stopKivra();
  EXPECT_TRUE(shows("Num Lock", Mod2Mask, true)) << "after the program's end";
}

TEST(Keyboards, KeysThatSwitchTheLayoutDoNotBreakTheWord) {
  constexpr std::uint8_t rightControl = 105;
  constexpr std::uint8_t rightAlt = 108;
  constexpr std::uint8_t leftSuper = 133;
  constexpr std::uint8_t menu = 135;
  const std::vector<std::pair<const char*, std::vector<std::uint8_t>>> switches = {
      {"grp:caps_toggle", {keys::capsLock}},
      {"grp:toggle", {rightAlt}},
      {"grp:rctrl_toggle", {rightControl}},
      {"grp:menu_toggle", {menu}},
      {"grp:lwin_toggle", {leftSuper}},
      {"grp:ctrl_shift_toggle", {keys::control, keys::shift}},
      {"grp:win_space_toggle", {leftSuper, keys::space}},
      {"grp:lctrl_lwin_rctrl_menu", {rightControl, menu}}};
  KeyboardDesktop desktop(keyboards(1));
  for (const auto& [option, chord] : switches) {
    desktop.session.run({"setxkbmap", "-layout", "us,ru", "-option", "", "-option", option});
    // There by the key and back by hand. The map may be on its way.
    const auto byHand = [&, held = chord] {
      desktop.typist.type("abc");
      desktop.typist.chord(held);
      desktop.typist.tap(keys::pause);
    };
    EXPECT_TRUE(waitFor([&] { return desktop.typed(byHand) == "abc"; })) << option;
    EXPECT_EQ(desktop.typed("ghbdtn "), "привет ") << option;
  }
}

TEST(Keyboards, OfXvncAreTheSame) {
  KeyboardDesktop desktop({.server = {.kind = XServer::Kind::xvnc}});
  EXPECT_EQ(desktop.typed("ghbdtn hello "), "привет hello ");
  desktop.typist.setPace({.key = 0us, .hold = 0us});
  EXPECT_EQ(desktop.typed("hello world "), "hello world ");
  desktop.typist.setPace(2ms, 8ms);
  const auto undone = desktop.typed([&] {
    desktop.typist.type("vfibyf ");
    desktop.window.textAfter("машина ");
    desktop.typist.tap(keys::shift);
    desktop.typist.tap(keys::shift);
  });
  EXPECT_EQ(undone, "vfibyf ");
  EXPECT_FALSE(desktop.typist.isAnyKeyDown());
}

TEST(Keyboards, WordOfAnotherProgramPassesAsItIs) {
  KeyboardDesktop desktop(keyboards(1));
  const auto word = desktop.typed([&] {
    desktop.session.run({"xdotool", "type", "--delay", "1", "ghbdtn"});
    desktop.window.textAfter("ghbdtn");
    desktop.typist.type(" ");
  });
  EXPECT_EQ(word, "ghbdtn ");
  const auto broken = desktop.typed([&] {
    desktop.typist.type("ghb");
    desktop.window.textAfter("ghb");
    desktop.session.run({"xdotool", "type", "d"});
    desktop.window.textAfter("ghbd");
    desktop.typist.type("tn ");
  });
  EXPECT_EQ(broken, "ghbdtn ");
  EXPECT_EQ(desktop.typed("ghbdtn "), "привет ");
}

}  // namespace
}  // namespace kivra::e2e
