// The real program and its guard in GNOME Shell.

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "gnome_server.h"
#include "hand.h"
#include "text_window.h"
#include "x_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

/// The program runs, and has selected the Russian layout for its first word.
class KivraInGnome : public testing::Test {
 protected:
  KivraInGnome() {
    auto environment = gnome.environment();
    environment["XDG_CACHE_HOME"] = KIVRA_E2E_CACHE;
    kivra = std::make_unique<ChildProcess>(
        std::vector<std::string>{KIVRA_PROGRAM},
        ChildProcess::Options{.environment = environment, .outputFile = gnome.path("kivra.log")});
    // The dictionaries are read in the background, the first time for the index that is kept then.
    const auto corrects = [this] {
      window.clear();
      hand.type("ghbdtn ");
      return window.textAfter("привет ") == "привет ";
    };
    if (!waitFor(corrects, 60s)) {
      throw std::runtime_error("Kivra corrects nothing: " + gnome.readFile("kivra.log"));
    }
    window.clear();
  }

  GnomeServer gnome;
  Hand hand;
  TextWindow window{TextWindow::Content{}};
  std::unique_ptr<ChildProcess> kivra;
};

TEST_F(KivraInGnome, MendsWordsInBothDirections) {
  hand.type("hello vbh ghbdtn world ");
  EXPECT_EQ(window.textAfter("hello мир привет world "), "hello мир привет world ");
}

TEST_F(KivraInGnome, KeepsCapitalsAndTakesAWordBack) {
  hand.press(KEY_LEFTSHIFT);
  hand.type("h");
  hand.release(KEY_LEFTSHIFT);
  hand.type("ello ");
  EXPECT_EQ(window.textAfter("Hello "), "Hello ");
  hand.tap(KEY_LEFTSHIFT);
  hand.tap(KEY_LEFTSHIFT);
  EXPECT_EQ(window.textAfter("Руддщ "), "Руддщ ");
}

}  // namespace
}  // namespace kivra::e2e
