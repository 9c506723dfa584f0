// The selected text of real applications, translated and corrected by a hotkey and given back by a
// double tap of Shift, with the clipboard as it was.

#include <gtest/gtest.h>

#include <fstream>
#include <thread>

#include "application_session.h"
#include "model_server.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

constexpr const char* translateHotkey = "ctrl+alt+e";
constexpr const char* correctHotkey = "ctrl+alt+c";

class TextActions : public testing::Test {
 protected:
  void SetUp() override {
    desktop.set("kivra.translationEngine", {"-string", "foundationModel"});
    desktop.startKivra({KIVRA_WITH_TEST_MODEL, std::to_string(server.port())});
    image = std::string("\x89PNG\r\n\x1a\n", 8) + std::string(300000, '.');
    std::ofstream(desktop.session.path("image"), std::ios::binary) << image;
  }

  /// Some program that holds an image ready for whoever pastes.
  void copyImage() {
    owner = desktop.session.start({"xclip", "-quiet", "-selection", "clipboard", "-t", "image/png",
                                   "-i", desktop.session.path("image").string()});
    ASSERT_TRUE(waitFor([this] { return isImageBack(); }));
  }

  /// Whether the clipboard holds the image, and nothing but.
  bool isImageBack() {
    const auto paste = [&](const char* type) {
      return desktop.session.run(
          {"timeout", "2", "xclip", "-selection", "clipboard", "-t", type, "-o"});
    };
    return paste("image/png") == image && paste("TARGETS").find("UTF8_STRING") == std::string::npos;
  }

  /// Selects everything, presses the hotkey and waits until the clipboard has been given back.
  void act(const char* hotkey) {
    copyImage();
    const auto before = server.requestCount();
    desktop.press("ctrl+a");
    desktop.press(hotkey);
    ASSERT_TRUE(waitFor([&] { return server.requestCount() == before + 1; }))
        << desktop.session.kivraLog();
    std::this_thread::sleep_for(500ms);  // for pasting, and for what stays on the clipboard so long
    EXPECT_TRUE(waitFor([&] { return isImageBack(); })) << "the clipboard is another";
  }

  void undo() {
    typist.tap(keys::shift);
    typist.tap(keys::shift);
    std::this_thread::sleep_for(300ms);
    for (int i = 1; i < undoSteps; ++i) desktop.press("ctrl+z");
  }

  void expectText(const std::string& expected) {
    std::string text;
    waitFor([&] { return (text = desktop.copyAll()) == expected; }, 5s);
    EXPECT_TRUE(text == expected) << text.substr(0, 80) << " instead of " << expected;
  }

  /// Everything that can be done to the field that has the focus.
  void playADay() {
    typist.type("hello world");
    act(translateHotkey);
    expectText("T(hello world)");
    act(translateHotkey);
    undo();
    expectText("T(hello world)");
    act(correctHotkey);
    expectText("C(T(hello world))");
    act(correctHotkey);
    undo();
    expectText("C(T(hello world))");
  }

  /// How often the application's own undo is needed after a paste over a selection.
  int undoSteps = 1;

  ModelServer server;
  ApplicationSession desktop;
  Typist typist{desktop.session};
  std::string image;
  std::unique_ptr<ChildProcess> owner;
};

TEST_F(TextActions, GtkEditor) {
  desktop.openPlainGtkEditor();
  playADay();
}

TEST_F(TextActions, GtkEditorThatUndoesInTwoSteps) {
  undoSteps = 2;
  desktop.openGtkEditor();
  playADay();
}

TEST_F(TextActions, QtEditor) {
  desktop.openQtEditor();
  playADay();
}

TEST_F(TextActions, Chromium) {
  desktop.openChromium();
  playADay();
}

TEST_F(TextActions, ReadWhatABusyApplicationHasYetToSelect) {
  const auto translateLastWord = [&](const char* application) {
    SCOPED_TRACE(application);
    typist.type("hello world");
    std::this_thread::sleep_for(300ms);
    auto process = desktop.session.run({"xdotool", "getactivewindow", "getwindowpid"});
    process.pop_back();
    const auto before = server.requestCount();
    desktop.session.run({"kill", "-STOP", process});
    desktop.press("ctrl+shift+Left");
    desktop.press(translateHotkey);
    desktop.session.run({"kill", "-CONT", process});
    ASSERT_TRUE(waitFor([&] { return server.requestCount() > before; }));
    std::this_thread::sleep_for(1s);
    expectText("hello T(world)");
  };
  desktop.openGtkEditor();
  translateLastWord("GTK");
  desktop.openQtEditor();
  translateLastWord("Qt");
}

TEST_F(TextActions, LeaveTheKeyboardAloneDuringASlowReply) {
  desktop.openGtkEditor();
  typist.type("hello world");
  server.setHolding(true);
  copyImage();
  desktop.press("ctrl+a");
  desktop.press(translateHotkey);
  ASSERT_TRUE(waitFor([&] { return server.requestCount() == 1; }));
  desktop.press("End");
  typist.type(" ghbdtn ");
  ASSERT_TRUE(waitFor([&] { return typist.group() == 1; })) << "the word is corrected meanwhile";
  server.setHolding(false);
  // To read the field sooner would select what the reply then replaces.
  std::this_thread::sleep_for(2s);
  expectText("hello world привет T(hello world)");
  EXPECT_EQ(desktop.session.kivraLog().find("hello"), std::string::npos) << "typed text is logged";
}

}  // namespace
}  // namespace kivra::e2e
