#include "sway_matrix.h"

#include <linux/input-event-codes.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

#include "kivra_in_sway.h"
#include "typing_table.h"

namespace kivra::soak {

namespace {

using namespace std::chrono_literals;

class SwayHands : public Hands {
 public:
  explicit SwayHands(e2e::KivraInSway& session) : session_(session) {}

  // The layout of the last word stays; one that is right in the other layout brings that back.
  void prepare() override { session_.hand.type("hello "); }
  void type(const std::string& text, std::chrono::milliseconds pace, bool isRolling) override {
    session_.hand.type(text, e2e::paceOfHands(pace, isRolling));
  }
  // A window that is opened is told of the keys that are down.
  bool areOffTheKeys() override {
    return e2e::waitFor([] { return !e2e::TextWindow().isAnyKeyDown(); }, 1s);
  }

 private:
  e2e::KivraInSway& session_;
};

class SwayMatrix {
 public:
  SwayMatrix(int words, std::string only) : words_(words), only_(std::move(only)) {
    session_.startKivra();
  }

  bool fill() {
    fillTestWindow();
    fillEditor("GTK 3", {"mousepad", "--disable-server"}, "mousepad");
    fillEditor("GTK 4", {"gnome-text-editor", "--standalone"}, "org.gnome.TextEditor");
    fillEditor("Qt 6", {KIVRA_QT_EDITOR}, "qt_editor");
    fillTerminal("foot", {"foot", "--app-id", "notes"});
    fillTerminal("xterm",
                 {"env", "DISPLAY=" + xwaylandDisplay(), "xterm", "-u8", "-class", "notes", "-e"});
    fillChromium();
    return isGood_;
  }

 private:
  bool isAsked(const std::string& name) const { return only_.empty() || only_ == name; }

  void fillTestWindow() {
    if (!isAsked("test window")) return;
    e2e::TextWindow window;
    fillRows({.name = "test window",
              .clear = [&] { window.clear(); },
              .text = [&](const auto& expected) { return window.textAfter(expected); }});
  }

  void fillEditor(const std::string& name, const std::vector<std::string>& command,
                  const std::string& application) {
    if (!isAsked(name)) return;
    const auto editor = session_.open(command, application);
    if (!session_.mends([&] { return session_.copyAll() == "привет "; })) {
      throw std::runtime_error(name + " takes no keys");
    }
    const auto clear = [&] {
      session_.chord({KEY_LEFTCTRL, KEY_A});
      session_.hand.tap(KEY_BACKSPACE);
    };
    const auto textOf = [&](const std::string& expected) {
      std::string text;
      e2e::waitFor([&] { return (text = session_.copyAll()) == expected; }, editorPatience);
      return text;
    };
    fillRows({.name = name, .clear = clear, .text = textOf});
  }

  /// What a terminal has taken of a line is written to a file at the line's end.
  void fillTerminal(const std::string& name, std::vector<std::string> command) {
    if (!isAsked(name)) return;
    command.insert(command.end(), {"sh", "-c", "exec cat >>$XDG_RUNTIME_DIR/lines"});
    const auto terminal = session_.open(e2e::SwayServer::asItsUser(command), "notes");
    const auto clear = [&] {
      session_.hand.tap(KEY_ENTER);
      std::this_thread::sleep_for(300ms);
      std::filesystem::resize_file(session_.sway.path("run/lines"), 0);
    };
    const auto textOf = [&](const std::string& expected) {
      session_.hand.tap(KEY_ENTER);
      e2e::waitFor([&] { return session_.sway.readFile("run/lines") == expected + "\n"; },
                   editorPatience);
      return session_.sway.readFile("run/lines");
    };
    if (!session_.mends([&] {
          session_.hand.tap(KEY_ENTER);
          return session_.sway.readFile("run/lines").ends_with("привет \n");
        })) {
      throw std::runtime_error(name + " takes no keys");
    }
    fillRows({.name = name, .clear = clear, .text = textOf});
  }

  void fillChromium() {
    std::ofstream(session_.sway.path("page.html"))
        << "<!doctype html><meta charset=utf-8><textarea autofocus rows=9 cols=60></textarea>";
    fillEditor("Chromium",
               {"chromium", "--no-sandbox", "--no-first-run", "--disable-gpu",
                "--password-store=basic", "--ozone-platform=wayland", "--enable-wayland-ime",
                "--user-data-dir=" + session_.sway.path("chromium").string(),
                "--app=file://" + session_.sway.path("page.html").string()},
               "chrome");
  }

  /// sway tells it only what it starts itself.
  std::string xwaylandDisplay() const {
    session_.sway.message({"exec", "echo $DISPLAY >$XDG_RUNTIME_DIR/display"});
    std::string display;
    e2e::waitFor([&] { return (display = session_.sway.readFile("run/display")).ends_with('\n'); });
    display.pop_back();
    return display;
  }

  void fillRows(const Program& program) {
    isGood_ =
        fillTable("sway", program, hands_, words_, {0ms, 1ms, 2ms, 5ms, 10ms, 30ms}) && isGood_;
  }

  e2e::KivraInSway session_{"xwayland enable"};
  SwayHands hands_{session_};
  int words_;
  std::string only_;
  bool isGood_ = true;
};

}  // namespace

bool fillSway(int words, const std::string& only) { return SwayMatrix(words, only).fill(); }

}  // namespace kivra::soak
