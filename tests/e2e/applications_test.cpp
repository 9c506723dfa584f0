// Real applications: what is typed is mended in place, and read back from them.

#include <gtest/gtest.h>

#include "application_session.h"
#include "kivra_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

/// Characters that no layout has, one of them in two parts.
constexpr const char* smile = "é Ünï 😀❤️ → ёлки ok";

class Applications : public testing::Test {
 protected:
  void SetUp() override {
    storeReplacement(desktop.session, "smile", smile);
    desktop.startKivra();
  }

  /// The same in every application: words at a brisk pace, a replacement in either layout.
  void typeSample() {
    Typist typist(desktop.session);
    typist.setPace(5ms, 10ms);
    typist.type("ghbdtn hello vfibyf keyboard ckjdj smile ghbdtn hello smile ");
  }

  const std::string sample =
      std::string("привет hello машина keyboard слово ") + smile + " привет hello " + smile + " ";

  void expectSample() {
    std::string text;
    waitFor(
        [&] {
          text = desktop.copyAll();
          return text == sample;
        },
        5s);
    EXPECT_EQ(text, sample);
  }

  ApplicationSession desktop;
};

TEST_F(Applications, GtkEditor) {
  desktop.openGtkEditor();
  typeSample();
  expectSample();
}

TEST_F(Applications, QtEditor) {
  desktop.openQtEditor();
  typeSample();
  expectSample();
}

TEST_F(Applications, Terminal) {
  desktop.openTerminal("cat >'" + desktop.session.path("typed").string() + "'");
  typeSample();
  Typist(desktop.session).tap(keys::enter);
  const auto expected = sample + "\n";
  waitFor([&] { return desktop.session.readFile("typed") == expected; }, 5s);
  EXPECT_EQ(desktop.session.readFile("typed"), expected);
}

TEST_F(Applications, Chromium) {
  desktop.openChromium();
  typeSample();
  expectSample();
}

}  // namespace
}  // namespace kivra::e2e
