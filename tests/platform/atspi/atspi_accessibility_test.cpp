#include "platform/atspi/atspi_accessibility.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "event_loop.h"
#include "platform/accessibility_contract.h"
#include "platform/qt/qt_run_loop.h"
#include "x_session.h"

namespace kivra {
namespace {

using namespace std::chrono_literals;

/// A session with programs of its own.
class AtspiDesktop {
 public:
  AtspiDesktop() {
    for (const auto& [name, value] : session_.environment()) {
      ::setenv(name.c_str(), value.c_str(), 1);
    }
    bus_.emplace();
    // A focus that moves before anybody listens is not told again.
    EXPECT_TRUE(qt::turnUntil([this] { return bus_->isEnabled(); }));
    accessibility_.emplace(*bus_, runLoop_, [this] { return [this] { return isBehind_; }; });
  }

  Accessibility& accessibility() { return *accessibility_; }
  void openField(const std::string& text) {
    program_ = open({"zenity", "--entry", "--entry-text=" + text});
  }
  void openPassword() {
    program_ = open({"zenity", "--password"}, [this] { return bus_->isPasswordFocused(); });
    press({"s", "e", "c", "r", "e", "t"});
  }
  void selectAll() { press({"ctrl+a"}); }
  static bool turnUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
    return qt::turnUntil(condition, timeout);
  }

 protected:
  /// Starts a program and waits until a field of it has the focus, with its text.
  std::unique_ptr<e2e::ChildProcess> open(const std::vector<std::string>& command) {
    return open(command, [this] {
      return readFocused(*accessibility_, accessibility_attributes::value).has_value();
    });
  }
  std::unique_ptr<e2e::ChildProcess> open(const std::vector<std::string>& command,
                                          const std::function<bool()>& isFocused) {
    auto program = session_.start(command);
    // On a busy machine an application may have the focus before it knows who listens, and then
    // tells nobody: it is given the focus again.
    for (int attempt = 0; attempt < 10 && !qt::turnUntil(isFocused, 3s); ++attempt) {
      session_.run({"timeout", "5", "xdotool", "getactivewindow", "windowminimize", "--sync",
                    "windowactivate", "--sync"});
    }
    EXPECT_TRUE(isFocused()) << command[0];
    return program;
  }

  void press(const std::vector<std::string>& keys) {
    std::vector<std::string> command = {"xdotool", "key", "--delay", "20"};
    command.insert(command.end(), keys.begin(), keys.end());
    session_.run(command);
  }

  e2e::XSession session_;
  qt::QtRunLoop runLoop_;
  std::optional<AccessibilityBus> bus_;
  std::optional<AtspiAccessibility> accessibility_;
  std::unique_ptr<e2e::ChildProcess> program_;
  bool isBehind_ = false;  // the application, with its keys
};
INSTANTIATE_TYPED_TEST_SUITE_P(Atspi, AccessibilityContract, AtspiDesktop);

class AtspiAccessibilityTest : public testing::Test, protected AtspiDesktop {
 protected:
  std::optional<std::string> read(const char* attribute) {
    return readFocused(*accessibility_, attribute);
  }

  /// Waits for the attribute to have this text; prints what it has otherwise.
  testing::AssertionResult reads(const char* attribute, const std::string& expected) {
    if (qt::turnUntil([&] { return read(attribute) == expected; }, 10s)) {
      return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << attribute << ": " << read(attribute).value_or("(none)");
  }

  std::string document(const std::string& text) {
    const auto path = session_.path("document.txt");
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
};

TEST_F(AtspiAccessibilityTest, ReadsTheTextAndTheSelectionOfAnEditor) {
  const auto editor = open({"mousepad", document("Привет, мир 😀\nвторая строка\n")});
  EXPECT_TRUE(reads(accessibility_attributes::value, "Привет, мир 😀\nвторая строка\n"));
  EXPECT_TRUE(reads(accessibility_attributes::selectedText, ""));
  press({"ctrl+Home", "shift+End"});
  EXPECT_TRUE(reads(accessibility_attributes::selectedText, "Привет, мир 😀"));
  press({"ctrl+a"});
  EXPECT_TRUE(reads(accessibility_attributes::selectedText, "Привет, мир 😀\nвторая строка\n"));
  EXPECT_EQ(read("AXTitle"), std::nullopt);
}

TEST_F(AtspiAccessibilityTest, KnowsOfASelectionBehindAWord) {
  const auto editor = open({"mousepad", document("hello world")});
  const auto hasSelectionBehind = [&](std::size_t characters) {
    return qt::turnUntil([&] { return bus_->hasSelectionBehind(characters); }, 1s);
  };
  // An application that did not answer at once is asked no more of the same selection.
  const auto isSelected = [&] {
    press({"ctrl+End", "ctrl+shift+Left"});
    return hasSelectionBehind(6);
  };
  EXPECT_TRUE(qt::turnUntil(isSelected));
  press({"shift+Left"});
  EXPECT_FALSE(hasSelectionBehind(6)) << "it is the word itself that is selected";
  press({"shift+Left", "End"});
  EXPECT_FALSE(hasSelectionBehind(0));
}

TEST_F(AtspiAccessibilityTest, WaitsForAnApplicationBehindWithItsKeysButNotForever) {
  const auto editor = open({"mousepad", document("текст")});
  ASSERT_TRUE(reads(accessibility_attributes::value, "текст"));
  const auto timed = [&] {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_NE(focusedElement(*accessibility_), nullptr);
    return std::chrono::steady_clock::now() - start;
  };
  isBehind_ = true;
  runLoop_.asyncAfter(100ms, [&] { isBehind_ = false; });
  EXPECT_GE(timed(), 90ms);
  isBehind_ = true;
  EXPECT_LT(timed(), 5s);
}

TEST_F(AtspiAccessibilityTest, ReadsAMegabyte) {
  std::string text;
  while (text.size() < (1U << 20U)) text += "длинная строка длинного текста\n";
  const auto editor = open({"mousepad", document(text)});
  press({"ctrl+a"});
  EXPECT_TRUE(qt::turnUntil([&] { return read(accessibility_attributes::value) == text; }));
  EXPECT_TRUE(qt::turnUntil([&] { return read(accessibility_attributes::selectedText) == text; }));
}

TEST_F(AtspiAccessibilityTest, KnowsWhetherAPasswordIsRead) {
  openField("открыто");
  EXPECT_FALSE(bus_->isPasswordFocused());
  program_.reset();
  EXPECT_TRUE(qt::turnUntil([&] { return !read(accessibility_attributes::value); }));
  openPassword();
}

TEST_F(AtspiAccessibilityTest, GivesUpAnApplicationThatDoesNotAnswerAndServesTheRunLoopMeanwhile) {
  const auto editor = open({"mousepad", document("текст")});
  ASSERT_TRUE(reads(accessibility_attributes::value, "текст"));
  const auto element = focusedElement(*accessibility_);
  editor->signal(SIGSTOP);
  int ticks = 0;
  const auto timer = runLoop_.scheduleRepeatingTimer(5ms, [&] { ++ticks; });
  const auto start = std::chrono::steady_clock::now();
  const auto value = accessibility_->copyAttributeValue(*element, accessibility_attributes::value);
  const auto took = std::chrono::steady_clock::now() - start;
  EXPECT_TRUE(std::holds_alternative<std::monostate>(value));
  EXPECT_GE(took, 90ms);
  EXPECT_LT(took, 1s);
  EXPECT_GT(ticks, 0);
  editor->signal(SIGCONT);
  EXPECT_TRUE(reads(accessibility_attributes::value, "текст"));
  editor->signal(SIGKILL);
  EXPECT_TRUE(qt::turnUntil([&] {
    return std::holds_alternative<std::monostate>(
        accessibility_->copyAttributeValue(*element, accessibility_attributes::value));
  }));
}

TEST(AtspiAccessibilityAlone, HasNothingWithoutABus) {
  ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
  AccessibilityBus bus;
  qt::QtRunLoop runLoop;
  AtspiAccessibility accessibility(bus, runLoop, nullptr);
  EXPECT_EQ(accessibility.createSystemWide(), nullptr);
}

}  // namespace
}  // namespace kivra
