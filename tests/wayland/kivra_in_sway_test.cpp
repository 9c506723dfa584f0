// The real program and its guard in a compositor: what it mends, and what it leaves alone.

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <string>
#include <thread>
#include <vector>

#include "kivra_in_sway.h"
#include "screen_reader.h"
#include "x_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

constexpr const char* typed = "ghbdtn ";
constexpr const char* mended = "привет ";

struct RunningKivra : KivraInSway {
  RunningKivra() { startKivra(); }
};

TEST(KivraInSway, MendsAWordAndTakesItBack) {
  RunningKivra session;
  TextWindow window;
  session.hand.type(typed);
  EXPECT_EQ(window.textAfter(mended), mended);
  session.hand.tap(KEY_LEFTSHIFT);
  session.hand.tap(KEY_LEFTSHIFT);
  EXPECT_EQ(window.textAfter(typed), typed);
}

TEST(KivraInSway, SelectsTheLayoutOfTheWordForWhatComesNext) {
  RunningKivra session;
  TextWindow window;
  session.hand.type("ghbdtn vbh hello world ");
  EXPECT_EQ(window.textAfter("привет мир hello world "), "привет мир hello world ");
}

TEST(KivraInSway, SwitchesTheWordByHand) {
  RunningKivra session;
  TextWindow window;
  session.hand.type("ghbdtn");
  EXPECT_EQ(window.textAfter("ghbdtn"), "ghbdtn");
  session.hand.tap(KEY_PAUSE);
  EXPECT_EQ(window.textAfter("привет"), "привет");
}

TEST(KivraInSway, TypesAnEntryOfTheDictionaryWithCharactersThatNoLayoutHas) {
  RunningKivra session;
  session.run({KIVRACTL, "dictionary", "add", "addr", "ул. Мира, 5 — €"});
  TextWindow window;
  session.hand.type("addr ");
  EXPECT_EQ(window.textAfter("ул. Мира, 5 — € "), "ул. Мира, 5 — € ");
}

TEST(KivraInSway, LeavesExcludedApplicationsAlone) {
  RunningKivra session;
  // foot is a terminal, and terminals are excluded from the start.
  const auto terminal = session.open({"foot", "sh", "-c", "head -n 1 >$HOME/line"}, "foot");
  session.hand.type("ghbdtn ghbdtn ");
  session.hand.tap(KEY_ENTER);
  EXPECT_EQ(session.written("line", "ghbdtn ghbdtn \n"), "ghbdtn ghbdtn \n");
}

TEST(KivraInSway, MendsInATerminalThatIsNotExcluded) {
  RunningKivra session;
  const auto terminal =
      session.open({"foot", "--app-id", "notes", "sh", "-c", "cat >$HOME/notes"}, "notes");
  EXPECT_TRUE(session.mends([&] {
    session.hand.tap(KEY_ENTER);
    return session.sway.readFile("notes").ends_with("привет \n");
  })) << session.sway.readFile("notes");
}

struct Editor {
  std::vector<std::string> command;
  std::string application;
};

void PrintTo(const Editor& editor, std::ostream* stream) { *stream << editor.application; }

class EditorInSway : public testing::TestWithParam<Editor> {};

INSTANTIATE_TEST_SUITE_P(Editors, EditorInSway,
                         testing::Values(Editor{{"mousepad", "--disable-server"}, "mousepad"},
                                         Editor{{KIVRA_QT_EDITOR}, "qt_editor"}));

TEST_P(EditorInSway, MendsAWord) {
  RunningKivra session;
  const auto editor = session.open(GetParam().command, GetParam().application);
  EXPECT_TRUE(session.mends([&] { return session.copyAll() == mended; })) << session.copyAll();
}

TEST_P(EditorInSway, LeavesAWordAloneInWhichTheCaretHasBeenMoved) {
  RunningKivra session;
  const auto editor = session.open(GetParam().command, GetParam().application);
  ASSERT_TRUE(session.mends([&] { return session.copyAll() == mended; }));
  const ScreenReader reader(session.sway.environment().at("DBUS_SESSION_BUS_ADDRESS"),
                            GetParam().application);
  const auto field = reader.waitFor("text", "");
  const auto becomes = [&](const std::string& begin, const std::string& end) {
    return waitFor(
        [&] {
          const auto text = reader.text(field);
          return text.starts_with(begin) && text.ends_with(end);
        },
        5s);
  };
  // Editors that have no time tell of their caret late.
  const auto leavesAlone = [&] {
    session.chord({KEY_LEFTCTRL, KEY_A});
    session.hand.type("hello world ");
    EXPECT_TRUE(becomes("hello world ", "")) << reader.text(field);
    session.hand.type("ghb");
    EXPECT_TRUE(becomes("hello world ghb", "")) << reader.text(field);
    std::this_thread::sleep_for(500ms);  // from the keyboard to the mouse
    reader.setCaret(field, 6);
    std::this_thread::sleep_for(500ms);  // and back
    session.hand.type("dtn ");
    return becomes("hello ", " world ghb");
  };
  EXPECT_TRUE(leavesAlone() || leavesAlone() || leavesAlone()) << reader.text(field);
}

TEST(KivraInSway, LeavesPasswordsOfGtkAlone) {
  RunningKivra session;
  const auto dialog = session.open({"zenity", "--password"}, "zenity", "password");
  const ScreenReader reader(session.sway.environment().at("DBUS_SESSION_BUS_ADDRESS"), "zenity");
  EXPECT_TRUE(reader.getsFocus(reader.waitFor("password text", "")));
  session.hand.type(typed);
  session.hand.tap(KEY_ENTER);
  EXPECT_EQ(session.written("password", std::string(typed) + "\n"), std::string(typed) + "\n");
}

TEST(KivraInSway, LeavesPasswordsOfQtAlone) {
  RunningKivra session;
  const auto form = session.open({"sh", "-c", KIVRA_QT_FORM " 2>/dev/null"}, "qt_form", "form");
  const ScreenReader reader(session.sway.environment().at("DBUS_SESSION_BUS_ADDRESS"), "qt_form");
  EXPECT_TRUE(reader.getsFocus(reader.waitFor("text", "password")));
  session.hand.type(typed);
  session.hand.tap(KEY_TAB);
  EXPECT_TRUE(reader.getsFocus(reader.waitFor("text", "name")));
  session.hand.type("ghbdtn");
  session.hand.tap(KEY_ENTER);
  const auto expected = std::string(typed) + "|привет\n";
  EXPECT_EQ(session.written("form", expected), expected);
}

TEST(KivraInSway, OpensItsSettingsInFront) {
  RunningKivra session;
  TextWindow window;
  session.run({KIVRACTL, "settings"});
  EXPECT_TRUE(session.getsFocus("app.kivra.Kivra")) << session.kivraLog();
}

bool holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(KivraInSway, TellsWhatTheSessionHasAndWhatItLacks) {
  KivraInSway session;
  const auto diagnosis = [&] { return session.run({KIVRA_PROGRAM, "--diagnose"}); };
  const auto before = diagnosis();
  EXPECT_TRUE(holds(before, "Сеанс: Wayland (wayland-")) << before;
  EXPECT_TRUE(holds(before, "Сервер окон: sway\n")) << before;
  EXPECT_TRUE(holds(before, "Клавиатура: без присмотра — ")) << before;
  EXPECT_TRUE(holds(before, "Раскладки: us, ru\n")) << before;
  EXPECT_TRUE(holds(before, "Метод ввода: свободен\n")) << before;
  const ScriptedProgram other(session.sway.environment(), session.sway.path("guard.log"));
  const auto taken = diagnosis();
  EXPECT_TRUE(holds(taken, "Метод ввода: занят другой программой — ")) << taken;
}

TEST(KivraInSway, NamesWhatKeepsItFromTheKeyboard) {
  KivraInSway session;
  const ScriptedProgram other(session.sway.environment(), session.sway.path("guard.log"));
  const auto kivra = session.sway.start({KIVRA_PROGRAM}, "kivra.log");
  EXPECT_TRUE(waitFor([&] {
    return holds(session.run({KIVRACTL, "status"}), "метод ввода занят другой программой\n");
  })) << session.kivraLog();
}

TEST(KivraInSway, TellsHowItRuns) {
  RunningKivra session;
  const auto running = session.run({KIVRA_PROGRAM, "--diagnose"});
  EXPECT_TRUE(holds(running, "Клавиатура: под присмотром Kivra\n")) << running;
  EXPECT_TRUE(holds(running, "Метод ввода: Kivra\n")) << running;
  EXPECT_EQ(session.run({KIVRACTL, "status"}), running);
}

TEST(KivraInSway, EndsWithTheCompositor) {
  RunningKivra session;
  session.sway.kill();
  EXPECT_EQ(session.kivra().wait(10s), EXIT_FAILURE) << session.kivraLog();
}

}  // namespace
}  // namespace kivra::e2e
