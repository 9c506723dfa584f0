// Situations in which programs of this kind go wrong.

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "kivra_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

/// Whether words are mended, if not at once: the program hears of a new keyboard map or an active
/// window a moment late.
bool corrects(KivraSession& desktop, TestWindow& window, const char* typed, const char* expected) {
  return waitFor([&] {
    desktop.typist.selectGroup(0);
    window.textWhenQuiet(50ms);
    window.clear();
    desktop.typist.type(typed);
    return window.textAfter(expected) == expected;
  });
}

bool corrects(KivraSession& desktop, const char* typed, const char* expected) {
  return corrects(desktop, desktop.window, typed, expected);
}

bool hasPress(const TestWindow& window, std::uint8_t code) {
  return std::ranges::any_of(window.keys(),
                             [code](const auto& key) { return key.down && key.code == code; });
}

TEST(Traps, LayoutIsSelectedForTheWholeSession) {
  KivraSession desktop;
  desktop.typist.type("ghbdtn ");
  EXPECT_EQ(desktop.window.textAfter("привет "), "привет ");
  EXPECT_EQ(desktop.typist.group(), 1U);
}

TEST(Traps, LayoutSelectedByTheDesktopCounts) {
  KivraSession desktop;
  desktop.typist.selectGroup(1);
  desktop.typist.type("hello ");
  EXPECT_EQ(desktop.window.textAfter("hello "), "hello ");
  EXPECT_EQ(desktop.typist.group(), 0U);
}

TEST(Traps, HeldShiftIsTakenAwayAndGivenBack) {
  KivraSession desktop;
  desktop.typist.type("ghbdtn");
  desktop.typist.press(keys::shift);
  desktop.typist.tap(keys::space);
  desktop.window.textAfter("привет ");
  desktop.typist.type("f");
  desktop.typist.release(keys::shift);
  desktop.typist.type("f");
  EXPECT_EQ(desktop.window.textAfter("привет Аа"), "привет Аа");
}

/// What is typed in capitals comes out in capitals, and the lock stays on.
TEST(Traps, CapsLockHoldsForTheCorrection) {
  KivraSession desktop;
  desktop.typist.tap(keys::capsLock);
  desktop.typist.type("ghbdtn ");
  EXPECT_EQ(desktop.window.textAfter("ПРИВЕТ "), "ПРИВЕТ ");
  desktop.typist.tap(keys::capsLock);
  desktop.typist.type("f");
  EXPECT_EQ(desktop.window.textAfter("ПРИВЕТ а"), "ПРИВЕТ а");
}

TEST(Traps, HeldLetterIsTypedAgain) {
  KivraSession desktop;
  desktop.typist.type("ghbdt");
  desktop.typist.press(57);  // n, released only after Space
  desktop.typist.press(keys::space);
  EXPECT_EQ(desktop.window.textAfter("привет "), "привет ");
  desktop.typist.release(57);
  desktop.typist.release(keys::space);
  desktop.typist.type("vbh");
  EXPECT_EQ(desktop.window.textAfter("привет мир"), "привет мир");
}

TEST(Traps, ShortcutEndsTheWord) {
  KivraSession desktop;
  desktop.typist.type("ghbdtn");
  desktop.typist.chord({keys::control, keys::backspace});
  desktop.window.textAfter("ghbdt");
  desktop.typist.type(" ");
  EXPECT_EQ(desktop.window.textAfter("ghbdt "), "ghbdt ");
}

TEST(Traps, ClickEndsTheWord) {
  KivraSession desktop;
  desktop.typist.type("ghbdtn");
  desktop.typist.click();
  desktop.typist.type(" ");
  EXPECT_EQ(desktop.window.textAfter("ghbdtn "), "ghbdtn ");
}

/// With and without a window manager, which tells of the active window after it has the focus.
class FocusTrap : public testing::TestWithParam<bool> {};

INSTANTIATE_TEST_SUITE_P(WindowManager, FocusTrap, testing::Values(false, true));

TEST_P(FocusTrap, OtherWindowIsNotErasedIn) {
  KivraSession desktop({.windowManager = GetParam()});
  desktop.typist.type("ghbdtn");
  desktop.window.textAfter("ghbdtn");
  TestWindow other(desktop.session.display());
  ASSERT_TRUE(waitFor([&] { return desktop.session.isKeyboardHeld(); })) << "follows the focus";
  desktop.typist.type(" ");
  EXPECT_EQ(other.textAfter(" "), " ");
  EXPECT_FALSE(hasPress(other, keys::backspace));
  EXPECT_EQ(desktop.window.textWhenQuiet(), "ghbdtn");
}

/// Toolkits close pop-ups and reset input methods when the focus leaves, be it for a moment.
TEST(Traps, FocusStaysWithTheApplication) {
  KivraSession desktop;
  desktop.typist.type("ghbdtn ");
  desktop.window.textAfter("привет ");
  desktop.typist.tap(keys::shift);
  desktop.typist.tap(keys::shift);
  desktop.window.textAfter("ghbdtn ");
  desktop.typist.type("hello world\nhello\thello ");
  constexpr const char* expected = "ghbdtn hello world\nhello\thello ";
  EXPECT_EQ(desktop.window.textAfter(expected), expected);
  EXPECT_EQ(desktop.window.focusLosses(), 0);
  desktop.typist.type("ghbdtn");
  desktop.typist.chord({keys::control, keys::alt, keys::p});
  EXPECT_EQ(desktop.window.textAfter(std::string(expected) + "привет"),
            std::string(expected) + "привет");
  EXPECT_EQ(desktop.window.focusLosses(), 0) << "by a hotkey";
}

TEST(Traps, WordsAreMendedWhereverTheFocusGoes) {
  KivraSession desktop;
  {
    TestWindow other(desktop.session.display());
    EXPECT_TRUE(corrects(desktop, other, "ghbdtn ", "привет "));
  }
  desktop.window.focus();
  EXPECT_TRUE(corrects(desktop, "ghbdtn ", "привет "));
  // The keys go to the window under the pointer.
  desktop.session.run({"xdotool", "mousemove", "300", "300"});
  desktop.window.giveFocusUp();
  EXPECT_TRUE(corrects(desktop, "ghbdtn ", "привет "));
}

TEST(Traps, ConsumedHotkeyNeverReachesTheApplication) {
  KivraSession desktop;
  desktop.typist.type("ghbdtn");
  desktop.window.textAfter("ghbdtn");
  desktop.typist.chord({keys::control, keys::alt, keys::p});
  EXPECT_EQ(desktop.window.textAfter("привет"), "привет");
  EXPECT_FALSE(hasPress(desktop.window, keys::p));
  desktop.typist.tap(keys::pause);
  EXPECT_EQ(desktop.window.textAfter("ghbdtn"), "ghbdtn");
  EXPECT_FALSE(hasPress(desktop.window, keys::pause));
}

TEST(Traps, UnboundHotkeyReachesTheApplication) {
  XSession session;
  session.run({KIVRA_DEFAULTS, "write", "kivra.pauseAsManualSwitch", "-bool", "false"});
  session.startKivra();
  TestWindow window(session.display());
  Typist typist(session);
  typist.type("ghbdtn");
  typist.tap(keys::pause);
  EXPECT_EQ(window.textAfter("ghbdtn"), "ghbdtn");
  EXPECT_TRUE(hasPress(window, keys::pause));
}

TEST(Traps, DoubleShiftTakesTheCorrectionBack) {
  KivraSession desktop;
  desktop.typist.type("ghbdtn ");
  desktop.window.textAfter("привет ");
  desktop.typist.tap(keys::shift);
  desktop.typist.tap(keys::shift);
  EXPECT_EQ(desktop.window.textAfter("ghbdtn "), "ghbdtn ");
  EXPECT_EQ(desktop.typist.group(), 0U);
}

int repeatedSpaces(TestWindow& window, Typist& typist) {
  window.clear();
  typist.press(keys::space);
  std::this_thread::sleep_for(1s);
  typist.release(keys::space);
  return static_cast<int>(window.textWhenQuiet().size());
}

TEST(Traps, KeysRepeatAsWithoutTheProgram) {
  KivraSession desktop;
  desktop.session.run({"xset", "r", "rate", "200", "25"});
  const auto with = repeatedSpaces(desktop.window, desktop.typist);
  desktop.session.stopKivra();
  const auto without = repeatedSpaces(desktop.window, desktop.typist);
  EXPECT_GT(without, 10);
  EXPECT_NEAR(with, without, 3);
}

/// How often the server repeats a key for the application cannot be known: nothing may be erased by
/// count behind it.
TEST(Traps, RepeatedBackspaceEndsTheWord) {
  KivraSession desktop;
  desktop.session.run({"xset", "r", "rate", "200", "25"});
  desktop.typist.type("ghbdtnghbdtnghbdtn");
  desktop.window.textAfter("ghbdtnghbdtnghbdtn");
  desktop.typist.press(keys::backspace);
  waitFor([&] { return desktop.window.textWhenQuiet(1ms).size() <= 6; });
  desktop.typist.release(keys::backspace);
  const auto left = desktop.window.textWhenQuiet();
  desktop.typist.type(std::string("ghbdtn").substr(std::min<std::size_t>(left.size(), 6)) + " ");
  EXPECT_EQ(desktop.window.textAfter("ghbdtn "), "ghbdtn ");
}

/// Keys come to Kivra before they come to anybody's grabs.
TEST(Traps, HotkeyWorksWhereAnotherProgramGrabsTheKey) {
  KivraSession desktop;
  desktop.session.stopKivra();
  auto* const other = XOpenDisplay(desktop.session.display().c_str());
  ASSERT_NE(other, nullptr);
  XGrabKey(other, keys::pause, 0, DefaultRootWindow(other), False, GrabModeAsync, GrabModeAsync);
  XSync(other, False);
  desktop.startKivra();
  desktop.typist.type("ghbdtn");
  desktop.typist.tap(keys::pause);
  EXPECT_EQ(desktop.window.textAfter("привет"), "привет");
  XCloseDisplay(other);
}

TEST(Traps, WorksOnAfterTheKeyboardWasHeldByALocker) {
  KivraSession desktop;
  auto* const locker = XOpenDisplay(desktop.session.display().c_str());
  ASSERT_NE(locker, nullptr);
  const auto root = DefaultRootWindow(locker);
  ASSERT_EQ(XGrabKeyboard(locker, root, False, GrabModeAsync, GrabModeAsync, CurrentTime),
            GrabSuccess);
  ASSERT_EQ(XGrabPointer(locker, root, False, ButtonPressMask, GrabModeAsync, GrabModeAsync, None,
                         None, CurrentTime),
            GrabSuccess);
  desktop.typist.type("ghbdtn ghbdtn ");
  EXPECT_EQ(desktop.window.textWhenQuiet(), "");
  XCloseDisplay(locker);
  desktop.typist.type("ghbdtn ");
  EXPECT_EQ(desktop.window.textAfter("привет "), "привет ");
}

TEST(Traps, WorksOnAfterTheKeyboardMapChanged) {
  KivraSession desktop;
  desktop.session.run({"setxkbmap", "-layout", "us,ru", "-option", "ctrl:nocaps"});
  desktop.session.run({"setxkbmap", "-layout", "us,ru", "-option", ""});
  waitFor([&] { return desktop.session.isKeyboardHeld(); });
  desktop.typist.selectGroup(0);
  desktop.typist.type("ghbdtn ");
  EXPECT_EQ(desktop.window.textAfter("привет "), "привет ");
}

/// What is typed while the map changes may be left as it is, but nothing of it may be lost.
TEST(Traps, KeyboardMapChangedInMidWord) {
  KivraSession desktop;
  desktop.typist.type("ghb");
  desktop.session.run({"setxkbmap", "-layout", "us,ru", "-option", "ctrl:nocaps"});
  desktop.typist.type("dt");
  desktop.session.run({"setxkbmap", "-layout", "us,ru", "-option", ""});
  desktop.typist.type("n ");
  const auto text = desktop.window.textWhenQuiet();
  EXPECT_TRUE(text == "ghbdtn " || text == "привет ") << text;
  EXPECT_TRUE(corrects(desktop, "ghbdtn ", "привет "));
}

TEST(Traps, LayoutsSwappedInTheSession) {
  KivraSession desktop;
  desktop.session.run({"setxkbmap", "-layout", "ru,us"});
  EXPECT_TRUE(corrects(desktop, "hello ", "hello "));
  EXPECT_EQ(desktop.typist.group(), 1U);
  desktop.window.clear();
  desktop.typist.type("ghbdtn ");
  EXPECT_EQ(desktop.window.textAfter("привет "), "привет ");
  EXPECT_EQ(desktop.typist.group(), 0U);
}

TEST(Traps, FourLayoutsAndBackToTwo) {
  KivraSession desktop({.layouts = "us,de,fr,ru"});
  desktop.typist.type("ghbdtn ");
  EXPECT_EQ(desktop.window.textAfter("привет "), "привет ");
  EXPECT_EQ(desktop.typist.group(), 3U);
  desktop.session.run({"setxkbmap", "-layout", "us"});
  desktop.typist.type("ghbdtn ");
  EXPECT_EQ(desktop.window.textAfter("привет ghbdtn "), "привет ghbdtn ");
  desktop.session.run({"setxkbmap", "-layout", "us,ru"});
  EXPECT_TRUE(corrects(desktop, "ghbdtn ", "привет "));
}

TEST(Traps, KeyboardsComeAndGo) {
  KivraSession desktop;
  desktop.typist.type("ghb");
  desktop.typist.addMasterDevices("second");
  desktop.typist.type("dtn ");
  EXPECT_EQ(desktop.window.textAfter("привет "), "привет ");
  desktop.typist.type("hel");
  desktop.typist.removeMasterDevices("second");
  desktop.typist.type("lo ");
  EXPECT_EQ(desktop.window.textAfter("привет hello "), "привет hello ");
}

TEST(Traps, TwoRussianLayoutsAndTheFirstIsChosen) {
  KivraSession desktop({.layouts = "us,ru,ru", .variants = ",,phonetic"});
  desktop.typist.type("ghbdtn ");
  EXPECT_EQ(desktop.window.textAfter("привет "), "привет ");
  EXPECT_EQ(desktop.typist.group(), 1U);
}

TEST(Traps, DeadKeysPassUnharmed) {
  KivraSession desktop({.layouts = "us,ru,us", .variants = ",,intl"});
  desktop.typist.selectGroup(2);
  desktop.typist.type("'a ");
  desktop.window.textWhenQuiet();
  // The window has no input method: what counts is that every key arrives, and once.
  const auto presses =
      std::ranges::count_if(desktop.window.keys(), [](const auto& key) { return key.down; });
  EXPECT_EQ(presses, 3);
}

}  // namespace
}  // namespace kivra::e2e
