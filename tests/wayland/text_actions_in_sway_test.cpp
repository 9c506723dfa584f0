// The selected text of real applications in a compositor, translated and corrected by a hotkey and
// given back by a double tap of Shift, with the clipboard as it was.

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <fstream>
#include <string>

#include "kivra_in_sway.h"
#include "model_server.h"
#include "x_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

class TextActionsInSway : public testing::Test {
 protected:
  void SetUp() override {
    session.run({KIVRA_DEFAULTS, "write", "kivra.translationEngine", "-string", "foundationModel"});
    session.startKivra({KIVRA_WITH_TEST_MODEL, std::to_string(server.port())});
    std::ofstream(session.sway.path("image"), std::ios::binary) << image;
  }

  /// Some program that holds an image ready for whoever pastes.
  void copyImage() {
    owner = session.sway.start({"sh", "-c", "exec wl-copy -f -t image/png <$HOME/image"});
    ASSERT_TRUE(waitFor([this] { return isImageBack(); }));
  }

  /// Whether the clipboard holds the image, and nothing but.
  bool isImageBack() {
    return session.run({"timeout", "2", "wl-paste", "-n", "-t", "image/png"}) == image &&
           session.run({"wl-paste", "-l"}) == "image/png\n";
  }

  /// Selects everything and presses the hotkey; waits until the answer stands on the clipboard,
  /// from which it is pasted, and until that has been given back.
  void act(std::uint16_t hotkey, const std::string& answer) {
    copyImage();
    session.chord({KEY_LEFTCTRL, KEY_A});
    session.chord({KEY_LEFTCTRL, KEY_LEFTALT, hotkey});
    EXPECT_TRUE(waitFor([&] {
      return session.run({"timeout", "2", "wl-paste", "-n"}) == answer;
    })) << session.kivraLog();
    EXPECT_TRUE(waitFor([this] { return isImageBack(); })) << "the clipboard is another";
    expectText(answer);
  }

  void expectText(const std::string& expected) {
    std::string text;
    waitFor([&] { return (text = session.copyAll()) == expected; }, 5s);
    EXPECT_EQ(text, expected);
  }

  /// Everything that can be done to the field that has the focus.
  void playADay() {
    ASSERT_TRUE(session.mends([&] { return session.copyAll() == "привет "; }));
    session.hand.type("hello ");
    expectText("hello ");
    act(KEY_E, "T(hello )");
    act(KEY_C, "C(T(hello ))");
    session.hand.tap(KEY_LEFTSHIFT);
    session.hand.tap(KEY_LEFTSHIFT);
    expectText("T(hello )");
  }

  ModelServer server;
  KivraInSway session;
  const std::string image = std::string("\x89PNG\r\n\x1a\n", 8) + std::string(300000, '.');
  std::unique_ptr<ChildProcess> owner;
};

TEST_F(TextActionsInSway, GtkEditor) {
  const auto editor = session.open({"l3afpad"}, "l3afpad");
  playADay();
}

TEST_F(TextActionsInSway, QtEditor) {
  const auto editor = session.open({KIVRA_QT_EDITOR}, "qt_editor");
  playADay();
}

}  // namespace
}  // namespace kivra::e2e
