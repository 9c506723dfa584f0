// The real program in KWin, which starts the guard.

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "guarded_session.h"
#include "platform/wayland/client/plasma_window_watch.h"
#include "screen_reader.h"
#include "session_bus.h"
#include "x_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

constexpr const char* typed = "ghbdtn ";
constexpr const char* mended = "привет ";

const std::string entry = std::filesystem::path(KIVRA_PROGRAM).parent_path().parent_path() /
                          "share" / "applications" / "app.kivra.Kivra.InputMethod.desktop";

bool holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::filesystem::path newFolder() {
  std::string pattern = std::filesystem::temp_directory_path() / "kivra-kwin-XXXXXX";
  return ::mkdtemp(pattern.data());
}

/// A session of KWin with all that a desktop has on its bus.
class KivraInKwin {
 public:
  explicit KivraInKwin(const std::string& inputMethod = entry)
      : kwin({.hasTestsGuard = false,
              .configuration =
                  "[Tiling][x]\nkept=1\n\n[Wayland]\nInputMethod[$e]=" + inputMethod + "\n",
              .environment = {
                  {"DBUS_SESSION_BUS_ADDRESS", busEnvironment_["DBUS_SESSION_BUS_ADDRESS"]},
                  {"XDG_CACHE_HOME", KIVRA_E2E_CACHE}}}) {
    bus_.switchAccessibilityOn();
    waitUntilKwinAnswers();
    compositor_ = std::make_unique<wayland::Connection>();
    windows_ = std::make_unique<wayland::PlasmaWindowWatch>(*compositor_);
    compositor_->roundtrip();
    hand = std::make_unique<Hand>();
  }
  ~KivraInKwin() { std::filesystem::remove_all(folder_); }
  KivraInKwin(const KivraInKwin&) = delete;
  KivraInKwin& operator=(const KivraInKwin&) = delete;

  void startKivra() { kivra = start({KIVRA_PROGRAM}, "kivra.log"); }

  /// Waits until the program corrects in the window: KWin shows its keys a moment after it has got
  /// the focus, and the dictionaries are read in the background.
  void waitUntilItCorrects(TextWindow& window) {
    const auto corrects = [&](const char* text, const char* expected) {
      window.clear();
      hand->type(text);
      return window.textAfter(expected) == expected;
    };
    // The second brings back the layout that the first one's correction has left.
    if (!waitFor([&] { return corrects(typed, mended); }, 60s) ||
        !waitFor([&] { return corrects("hello ", "hello "); }, 60s)) {
      throw std::runtime_error("Kivra corrects nothing: " + window.text() +
                               kwin.readFile("kivra.log") + kwin.readFile("kwin.log"));
    }
    window.clear();
  }

  std::unique_ptr<ChildProcess> start(const std::vector<std::string>& command,
                                      const std::string& log) const {
    return std::make_unique<ChildProcess>(
        command,
        ChildProcess::Options{.environment = kwin.environment(), .outputFile = kwin.path(log)});
  }
  /// Opens a program's window and waits until it has the focus.
  std::unique_ptr<ChildProcess> open(const std::vector<std::string>& command,
                                     const std::string& application,
                                     const std::string& log = "window.log") {
    auto opened = start(command, log);
    const auto isInFront = [&] {
      compositor_->roundtrip();
      return windows_->activeApplication() == application;
    };
    if (!waitFor(isInFront, 20s)) {
      throw std::runtime_error("in front: " + windows_->activeApplication().value_or("nothing"));
    }
    return opened;
  }

  std::string run(const std::vector<std::string>& command) const {
    return outputOf(command, kwin.environment());
  }

  ScreenReader readerOf(const std::string& application) const {
    return {kwin.environment().at("DBUS_SESSION_BUS_ADDRESS"), application};
  }

 private:
  /// While it starts, it waits for services of the bus.
  static void waitUntilKwinAnswers() {
    const auto doesAnswer = [] {
      try {
        const wayland::Connection connection;
        return true;
      } catch (const std::runtime_error&) {
        return false;
      }
    };
    if (!waitFor(doesAnswer, 60s)) throw std::runtime_error("KWin does not answer");
  }

  std::filesystem::path folder_ = newFolder();
  Environment busEnvironment_{
      {"PATH", std::getenv("PATH")}, {"HOME", folder_}, {"XDG_RUNTIME_DIR", folder_}};
  SessionBus bus_{folder_, busEnvironment_};
  std::unique_ptr<wayland::Connection> compositor_;
  std::unique_ptr<wayland::PlasmaWindowWatch> windows_;

 public:
  KwinServer kwin;
  std::unique_ptr<Hand> hand;
  std::unique_ptr<ChildProcess> kivra;
};

struct RunningKivra : KivraInKwin {
  RunningKivra() {
    startKivra();
    waitUntilItCorrects(window);
  }

  TextWindow window{TextWindow::Content{}};
};

TEST(KivraInKwin, MendsAWordTakesItBackAndSwitchesOneByHand) {
  RunningKivra session;
  const auto& window = session.window;
  session.hand->type(typed);
  ASSERT_EQ(window.textAfter(mended), mended) << session.kwin.readFile("kivra.log");
  session.hand->tap(KEY_LEFTSHIFT);
  session.hand->tap(KEY_LEFTSHIFT);
  ASSERT_EQ(window.textAfter(typed), typed);
  session.hand->type("vbh");
  const auto before = std::string(typed) + typedIn(0, "vbh");
  ASSERT_EQ(window.textAfter(before), before);
  session.hand->tap(KEY_PAUSE);
  const auto after = std::string(typed) + "мир";
  EXPECT_EQ(window.textAfter(after), after);
}

TEST(KivraInKwin, TypesAnEntryOfTheDictionaryWithCharactersThatNoLayoutHas) {
  RunningKivra session;
  session.run({KIVRACTL, "dictionary", "add", "addr", "ул. Мира, 5 — €"});
  const auto& window = session.window;
  session.hand->type("addr ");
  EXPECT_EQ(window.textAfter("ул. Мира, 5 — € "), "ул. Мира, 5 — € ");
}

TEST(KivraInKwin, LeavesExcludedApplicationsAlone) {
  RunningKivra session;
  session.run({KIVRACTL, "skip", "add", "org.example.Editor"});
  const auto& window = session.window;
  session.hand->type("ghbdtn ghbdtn ");
  EXPECT_EQ(window.textAfter("ghbdtn ghbdtn "), "ghbdtn ghbdtn ");
}

TEST(KivraInKwin, LeavesPasswordsOfGtkAlone) {
  RunningKivra session;
  const auto dialog = session.open({"zenity", "--password"}, "zenity", "password");
  const auto reader = session.readerOf("zenity");
  EXPECT_TRUE(reader.getsFocus(reader.waitFor("password text", "")));
  session.hand->type(typed);
  session.hand->tap(KEY_ENTER);
  const auto expected = std::string(typed) + "\n";
  EXPECT_TRUE(waitFor([&] { return session.kwin.readFile("password") == expected; }, 5s))
      << session.kwin.readFile("password");
}

TEST(KivraInKwin, LeavesPasswordsOfQtAlone) {
  RunningKivra session;
  const auto form = session.open({"sh", "-c", KIVRA_QT_FORM " 2>/dev/null"}, "qt_form", "form");
  const auto reader = session.readerOf("qt_form");
  EXPECT_TRUE(reader.getsFocus(reader.waitFor("text", "password")));
  session.hand->type(typed);
  session.hand->tap(KEY_TAB);
  EXPECT_TRUE(reader.getsFocus(reader.waitFor("text", "name")));
  session.hand->type("x");
  session.hand->tap(KEY_ENTER);
  const auto expected = std::string(typed) + "|x\n";
  EXPECT_TRUE(waitFor([&] { return session.kwin.readFile("form") == expected; }, 5s))
      << session.kwin.readFile("form");
}

TEST(KivraInKwin, ServesAgainWhenItIsStartedAnew) {
  RunningKivra session;
  session.kivra->signal(SIGKILL);
  session.kivra->wait(5s);
  session.hand->type(typed);
  EXPECT_EQ(session.window.textAfter(typed), typed);
  session.startKivra();
  session.waitUntilItCorrects(session.window);
}

TEST(KivraInKwin, TakesTheKeyboardWhenTheUserAsksForItAndGivesItBack) {
  KivraInKwin session("/usr/share/applications/other.desktop");
  session.startKivra();
  const auto reader = session.readerOf("Kivra");
  const auto button = reader.waitFor("push button", "Запросить (Input Monitoring)");
  EXPECT_TRUE(std::ranges::any_of(reader.controls(), [](const auto& control) {
    return holds(control.name, "/usr/share/applications/other.desktop");
  })) << "the other one is named";
  EXPECT_TRUE(holds(session.kwin.readFile("config/kwinrc"), "other.desktop"));
  reader.press(button);
  TextWindow window(TextWindow::Content{});
  session.waitUntilItCorrects(window);
  EXPECT_TRUE(holds(session.kwin.readFile("config/kwinrc"), "InputMethod=" + entry));
  session.run({KIVRA_PROGRAM, "--give-back-keyboard"});
  const auto settings = session.kwin.readFile("config/kwinrc");
  EXPECT_TRUE(holds(settings, "InputMethod=/usr/share/applications/other.desktop\n")) << settings;
  EXPECT_FALSE(holds(settings, "Kivra")) << settings;
  EXPECT_TRUE(holds(settings, "[Tiling][x]\nkept=1\n")) << settings;
}

TEST(KivraInKwin, TellsHowItRunsAndWhatItLacks) {
  KivraInKwin session("");
  const auto lacking = session.run({KIVRA_PROGRAM, "--diagnose"});
  EXPECT_TRUE(holds(lacking, "Сервер окон: kwin_wayland — KWin ещё не знает Kivra")) << lacking;
  EXPECT_TRUE(holds(lacking, "Раскладки: us, ru\n")) << lacking;
  EXPECT_TRUE(holds(lacking, "Метод ввода: свободен\n")) << lacking;
}

}  // namespace
}  // namespace kivra::e2e
