// What applications get of keys, modifiers, locks and layouts while the guard is the keyboard.

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <csignal>

#include "guarded_session.h"
#include "x_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;
using guard::ReportKind;

const SwayServer::Options layoutKey{.xkbOptions = "grp:shift_caps_toggle"};

/// Shift and Caps Lock, which switch the layout.
void toggleLayout(Hand& hand) {
  hand.press(KEY_LEFTSHIFT);
  hand.tap(KEY_CAPSLOCK);
  hand.release(KEY_LEFTSHIFT);
}

TEST(GuardedKeyboard, ModifiersLocksAndLayoutsAreThoseOfTheHands) {
  GuardedSession session(layoutKey);
  session.start();
  auto& hand = session.hand;
  auto& window = session.window;
  hand.press(KEY_LEFTSHIFT);
  hand.type("ab");
  hand.release(KEY_LEFTSHIFT);
  hand.tap(KEY_CAPSLOCK);
  hand.type("cd");
  hand.tap(KEY_CAPSLOCK);
  toggleLayout(hand);
  hand.type("ef");
  EXPECT_EQ(window.textAfter("ABCDуа"), "ABCDуа");
}

TEST(GuardedKeyboard, ALayoutKeyCountsFromTheLayoutThatWasSelectedLast) {
  GuardedSession session(layoutKey);
  session.start();
  auto& hand = session.hand;
  auto& window = session.window;
  auto& program = session.program;
  program->post({postedGroup(1)});
  program->post(postedTap(KEY_A));
  ASSERT_EQ(window.textAfter("ф"), "ф");
  toggleLayout(hand);
  hand.type("a");
  EXPECT_EQ(window.textAfter("фa"), "фa");
  // The session's switcher selects for the keyboards what they have already.
  hand.selectGroup(0);
  hand.selectGroup(1);
  hand.type("a");
  EXPECT_EQ(window.textAfter("фaф"), "фaф");
  EXPECT_TRUE(waitFor([&] { return program->reports().back().group == 1; }));
}

TEST(GuardedKeyboard, CharactersThatNoLayoutHasLeaveTheStateOfTheKeyboardAsItIs) {
  GuardedSession session;
  session.start();
  auto& hand = session.hand;
  auto& window = session.window;
  auto& program = session.program;
  hand.selectGroup(1);
  hand.tap(KEY_CAPSLOCK);
  hand.type("a");
  ASSERT_EQ(window.textAfter("Ф"), "Ф");
  program->post({postedCharacter(0x20AC), postedCharacter(0x2014), postedCharacter(0x1F600)});
  ASSERT_EQ(window.textAfter("Ф€—😀"), "Ф€—😀");
  hand.type("a");
  ASSERT_EQ(window.textAfter("Ф€—😀Ф"), "Ф€—😀Ф");
  program->post({postedCharacter(0x2014)});
  const std::string expected = "Ф€—😀Ф—";
  EXPECT_EQ(window.textAfter(expected), expected);
}

TEST(GuardedKeyboard, MoreCharactersThanTheMapHasSpareKeysAllCome) {
  GuardedSession session;
  session.start();
  std::vector<guard::PostedKey> characters;
  std::string expected;
  for (std::uint32_t i = 0; i < 60; ++i) {
    characters.push_back(postedCharacter(0x4E00 + i));
    expected += {'\xE4', static_cast<char>(0xB8), static_cast<char>(0x80 + i)};
  }
  session.program->post(characters);
  EXPECT_EQ(session.window.textAfter(expected), expected);
}

TEST(GuardedKeyboard, KeysHeldSinceBeforeTheGuardStaySoAndComeUp) {
  GuardedSession session;
  auto& hand = session.hand;
  auto& window = session.window;
  hand.press(KEY_LEFTSHIFT);
  hand.press(KEY_A);
  session.start();
  hand.release(KEY_A);
  hand.type("b");
  hand.release(KEY_LEFTSHIFT);
  hand.type("c");
  EXPECT_EQ(window.textAfter("ABc"), "ABc");
  EXPECT_TRUE(waitFor([&] { return !window.isAnyKeyDown(); }));
}

class EndOfGuard : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Signals, EndOfGuard, testing::Values(0, SIGKILL));

TEST_P(EndOfGuard, LetsGoOfHeldKeysAndGivesTheKeyboardBack) {
  GuardedSession session;
  session.start();
  auto& hand = session.hand;
  auto& window = session.window;
  auto& program = session.program;
  hand.press(KEY_LEFTSHIFT);
  hand.press(KEY_A);
  ASSERT_EQ(window.textAfter("A"), "A");
  if (GetParam() == 0) {
    program->hangUp();
  } else {
    ::kill(program->guardPid(), GetParam());
  }
  ASSERT_TRUE(program->watcher().wait(5s));
  EXPECT_TRUE(waitFor([&] { return !window.isAnyKeyDown(); }, 2s));
  hand.release(KEY_A);
  hand.release(KEY_LEFTSHIFT);
  hand.type("b");
  EXPECT_EQ(window.textAfter("Ab"), "Ab");
  session.start();
  hand.type("ghbdtn ");
  EXPECT_EQ(window.textAfter("Abпривет "), "Abпривет ");
}

TEST(GuardedKeyboard, AGuardMayStartWhereNobodyHasTypedYet) {
  EnteredSway sway;
  auto program = std::make_unique<ScriptedProgram>(sway.environment(), sway.path("guard.log"));
  EXPECT_TRUE(program->isReady());
  Hand hand;
  const TextWindow window;
  hand.type("ghbdtn ");
  EXPECT_EQ(window.textAfter("привет "), "привет ");
  // Its own keyboard, which is the last that was typed on, goes with a guard.
  program.reset();
  program = std::make_unique<ScriptedProgram>(sway.environment(), sway.path("guard.log"));
  EXPECT_TRUE(program->isReady());
  hand.type("ghbdtn ");
  EXPECT_EQ(window.textAfter("привет привет "), "привет привет ");
}

TEST(GuardedKeyboard, AStoppedGuardGoesOnWithWhatWasTypedMeanwhile) {
  GuardedSession session;
  session.start();
  ::kill(session.program->guardPid(), SIGSTOP);
  session.hand.type("ghbdtn ");
  EXPECT_EQ(session.window.textAfter("привет "), "привет ");
}

TEST(GuardedKeyboard, AProgramThatDoesNotAnswerKeepsNothing) {
  GuardedSession session;
  session.start();
  session.program->stopAnswering();
  session.hand.type("ghbdtn vbh");
  EXPECT_EQ(session.window.textAfter("ghbdtn vbh"), "ghbdtn vbh");
}

TEST(GuardedKeyboard, AKeyThatApplicationsRepeatBreaksTheWord) {
  GuardedSession session({.moreConfig = "input * repeat_delay 200"});
  session.start();
  auto& hand = session.hand;
  auto& window = session.window;
  auto& program = session.program;
  hand.type("gh");
  EXPECT_EQ(window.textAfter("gh"), "gh");
  program->clear();
  hand.press(KEY_B);
  EXPECT_TRUE(waitFor([&] { return program->count(ReportKind::wordBroken) == 1; }));
  hand.release(KEY_B);
  hand.type("dtn ");
  const auto expected = "ghb" + typedIn(1, "dtn ");
  EXPECT_EQ(window.textAfter(expected), expected);
}

TEST(GuardedKeyboard, AReloadedConfigurationChangesNothing) {
  GuardedSession session;
  session.start();
  auto& sway = session.sway;
  auto& hand = session.hand;
  auto& window = session.window;
  auto& program = session.program;
  hand.type("ghbdtn ");
  ASSERT_EQ(window.textAfter("привет "), "привет ");
  program->post({postedCharacter(0x2014)});
  ASSERT_EQ(window.textAfter("привет —"), "привет —");
  sway.message({"reload"});
  hand.type("ghbdtn ");
  ASSERT_EQ(window.textAfter("привет —привет "), "привет —привет ");
  program->post({postedCharacter(0x2014)});
  EXPECT_EQ(window.textAfter("привет —привет —"), "привет —привет —");
}

TEST(GuardedKeyboard, AKeyboardWithAnotherMapTypesWhatItMeansAndBreaksTheWord) {
  GuardedSession session;
  session.start();
  auto& hand = session.hand;
  auto& window = session.window;
  Hand french(mapOf("fr"));
  hand.type("gh");
  ASSERT_EQ(window.textAfter("gh"), "gh");
  french.type("q");
  ASSERT_EQ(window.textAfter("gha"), "gha");
  hand.type("bdtn ");
  const auto expected = "gha" + typedIn(1, "bdtn ");
  EXPECT_EQ(window.textAfter(expected), expected);
}

TEST(GuardedKeyboard, AModifierWhoseReleaseTheCompositorKeepsIsLetGoOf) {
  GuardedSession session({.moreConfig = "bindsym --release Super_L nop"});
  session.start();
  auto& hand = session.hand;
  auto& window = session.window;
  hand.tap(KEY_LEFTMETA);
  hand.type("ghbdtn ");
  EXPECT_EQ(window.textAfter("привет "), "привет ");
  EXPECT_TRUE(waitFor([&] { return !window.isAnyKeyDown(); }));
}

TEST(GuardedKeyboard, AKeyWhoseReleaseTheCompositorKeepsCanBeTypedAgain) {
  GuardedSession session({.moreConfig = "bindsym --release Mod4+b nop"});
  session.start();
  session.hand.press(KEY_LEFTMETA);
  session.hand.tap(KEY_B);
  session.hand.release(KEY_LEFTMETA);
  session.hand.type(" ghbdtn ");
  EXPECT_EQ(session.window.textAfter("b привет "), "b привет ");
}

TEST(GuardedKeyboard, AnotherInputMethodIsToldOf) {
  GuardedSession session;
  session.start();
  const ScriptedProgram second(session.sway.environment(), session.sway.path("second.log"));
  EXPECT_FALSE(second.isReady());
  EXPECT_EQ(second.count(ReportKind::unavailable), 1);
  EXPECT_NE(session.sway.readFile("second.log").find("другой метод ввода"), std::string::npos);
}

TEST(GuardedKeyboard, WhereThereIsNoDisplayTheGuardSaysSo) {
  const SwayServer sway;
  auto environment = sway.environment();
  environment.erase("WAYLAND_DISPLAY");
  const ScriptedProgram program(environment, sway.path("guard.log"));
  EXPECT_EQ(program.count(ReportKind::unavailable), 1);
  EXPECT_NE(sway.readFile("guard.log").find("нет ни композитора Wayland"), std::string::npos);
}

TEST(GuardedKeyboard, EndsWithTheCompositor) {
  GuardedSession session;
  session.start();
  session.sway.kill();
  EXPECT_TRUE(session.program->watcher().wait(3s));
}

}  // namespace
}  // namespace kivra::e2e
