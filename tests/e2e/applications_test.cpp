// Real applications: what is typed is mended in place, and read back from them.

#include <gtest/gtest.h>

#include <fstream>
#include <thread>

#include "kivra_session.h"

namespace kivra::e2e {
namespace {

using namespace std::chrono_literals;

/// JSON for the replacement dictionary.
constexpr const char* replacements =
    R"([{"id":"8C1C0C5E-6C0F-4B0E-9C5B-0F6B5D2F0A11","pattern":"smile","replacement":"é́ Ünï 😀 ok"}])";

std::string hex(const std::string& bytes) {
  constexpr const char* digits = "0123456789abcdef";
  std::string result;
  for (const auto byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    result += {digits[value >> 4], digits[value & 0xF]};
  }
  return result;
}

class Applications : public testing::Test {
 protected:
  void SetUp() override {
    session.run({KIVRA_DEFAULTS, "write", "kivra.skipBundleIDs", "-array"});
    session.run({KIVRA_DEFAULTS, "write", "kivra.replacements", "-data", hex(replacements)});
    desktop.emplace(session.display());
    session.startKivra();
    waitUntilLoaded();
    desktop.reset();
  }

  void waitUntilLoaded() {
    Typist typist(session.display());
    ASSERT_TRUE(waitFor(
        [&] {
          desktop->clear();
          typist.type("ghbdtn ");
          return desktop->textAfter("привет ") == "привет ";
        },
        60s));
    typist.selectGroup(0);
  }

  /// Waits for the window of a program to have the focus.
  void waitForWindow(const std::string& windowClass) {
    ASSERT_TRUE(waitFor(
        [&] {
          auto active = session.run({"xdotool", "getactivewindow"});
          if (active.empty()) return false;
          active.pop_back();
          return session.run({"xprop", "-id", active, "WM_CLASS"}).find(windowClass) !=
                 std::string::npos;
        },
        30s))
        << windowClass << " does not get the focus";
    std::this_thread::sleep_for(500ms);  // toolkits map the window before they read keys
  }

  /// The same in every application: a word by xdotool, others at a brisk pace, a replacement with
  /// characters that no layout has.
  void typeSample() {
    session.run({"xdotool", "type", "--delay", "30", "ghbdtn "});
    Typist typist(session.display());
    typist.setPace(5ms, 10ms);
    typist.type("hello vfibyf keyboard ckjdj smile ghbdtn ");
  }

  static constexpr const char* sample = "привет hello машина keyboard слово é́ Ünï 😀 ok привет ";

  std::string clipboard() {
    session.run({"xdotool", "key", "--clearmodifiers", "ctrl+a"});
    session.run({"xdotool", "key", "--clearmodifiers", "ctrl+c"});
    std::this_thread::sleep_for(100ms);
    return session.run({"timeout", "2", "xclip", "-selection", "clipboard", "-o"});
  }

  void expectSample() {
    std::string text;
    waitFor(
        [&] {
          text = clipboard();
          return text == sample;
        },
        5s);
    EXPECT_EQ(text, sample);
  }

  XSession session;
  std::optional<TestWindow> desktop;
};

TEST_F(Applications, GtkEditor) {
  const auto editor = session.start({"mousepad", "--disable-server"});
  waitForWindow("ousepad");
  typeSample();
  expectSample();
}

TEST_F(Applications, QtEditor) {
  const auto editor = session.start({"featherpad", "--standalone"});
  waitForWindow("eather");
  typeSample();
  expectSample();
}

TEST_F(Applications, Terminal) {
  const auto file = session.path("typed");
  const auto terminal =
      session.start({"xterm", "-u8", "-e", "sh", "-c", "cat >'" + file.string() + "'"});
  waitForWindow("XTerm");
  typeSample();
  Typist typist(session.display());
  typist.tap(keys::enter);
  const auto expected = std::string(sample) + "\n";
  waitFor([&] { return session.readFile("typed") == expected; }, 5s);
  EXPECT_EQ(session.readFile("typed"), expected);
}

TEST_F(Applications, Chromium) {
  std::ofstream(session.path("page.html"))
      << "<!doctype html><meta charset=utf-8><textarea autofocus rows=9 cols=60></textarea>";
  const auto browser = session.start({"chromium", "--no-sandbox", "--no-first-run", "--disable-gpu",
                                      "--password-store=basic",
                                      "--user-data-dir=" + session.path("chromium").string(),
                                      "--app=file://" + session.path("page.html").string()});
  waitForWindow("hromium");
  std::this_thread::sleep_for(2s);  // the page takes the focus when it is loaded
  typeSample();
  expectSample();
}

}  // namespace
}  // namespace kivra::e2e
