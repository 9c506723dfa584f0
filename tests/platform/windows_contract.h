#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "platform/windows.h"
#include "support/view_builders.h"

namespace kivra {

/// What windows do, whoever draws them. `Backend` is default-constructible and has
/// `Windows& windows()` and the user's side, each with what follows from it done:
/// - `isShown(window)`; `shows(window, text)`, a text stands in it; windows go by their names;
/// - `close(window)`; `press(window, text)` on a button or a switch that has the text;
/// - `type(window, placeholder, text)`: puts the cursor into the empty field, unless it is there,
///   and types a letter at a time.
template <class Backend>
class WindowsContract : public ::testing::Test {
 protected:
  static constexpr const char* name = "test";

  std::unique_ptr<Window> create() {
    auto window = backend_.windows().windowCreate(
        {.name = name,
         .title = "Test",
         .styleMask = window_styles::titled | window_styles::closable,
         .contentSize = WindowSize{300, 200}});
    window->setCloseHandler([this] { ++closings_; });
    return window;
  }
  Backend backend_;
  int closings_ = 0;
};
TYPED_TEST_SUITE_P(WindowsContract);

TYPED_TEST_P(WindowsContract, IsOnTheScreenFromOrderingFrontToClosing) {
  auto window = this->create();
  window->setContent(views::vStack(0, {views::text("one")}));
  EXPECT_FALSE(this->backend_.isShown(this->name));
  window->close();
  EXPECT_EQ(this->closings_, 0) << "it was not open";
  for (int round = 1; round <= 2; ++round) {
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(this->backend_.isShown(this->name));
    EXPECT_TRUE(this->backend_.shows(this->name, "one")) << "the content is kept";
    if (round == 1) {
      window->orderBack();
      window->close();
      window->close();
    } else {
      this->backend_.close(this->name);
    }
    EXPECT_FALSE(this->backend_.isShown(this->name));
    EXPECT_EQ(this->closings_, round);
  }
  window->makeKeyAndOrderFront();
  window.reset();
  EXPECT_FALSE(this->backend_.isShown(this->name));
}

TYPED_TEST_P(WindowsContract, IsInvisibleWithoutOpacity) {
  auto window = this->create();
  window->setContent(views::vStack(0, {views::text("one")}));
  window->setAlphaValue(0);
  window->makeKeyAndOrderFront();
  EXPECT_FALSE(this->backend_.isShown(this->name));
  window->setAlphaValue(1);
  window->makeKeyAndOrderFront();
  EXPECT_TRUE(this->backend_.isShown(this->name));
  window->setAlphaValue(0);
  EXPECT_FALSE(this->backend_.isShown(this->name));
}

TYPED_TEST_P(WindowsContract, DrawsTheTreeThatItWasGivenLast) {
  auto window = this->create();
  window->setContent(views::vStack(0, {views::text("one"), views::text("two")}));
  window->makeKeyAndOrderFront();
  EXPECT_TRUE(this->backend_.shows(this->name, "two"));
  window->setContent(views::vStack(0, {views::text("three")}));
  EXPECT_TRUE(this->backend_.shows(this->name, "three"));
  EXPECT_FALSE(this->backend_.shows(this->name, "one"));
  EXPECT_FALSE(this->backend_.shows(this->name, "two"));
  window->setContent(views::text("four"));
  EXPECT_TRUE(this->backend_.shows(this->name, "four"));
  EXPECT_FALSE(this->backend_.shows(this->name, "three"));
}

TYPED_TEST_P(WindowsContract, HandsOnWhatTheUserDoesToControlsThatAreEnabled) {
  auto window = this->create();
  int presses = 0;
  std::vector<bool> values;
  const auto count = [&] { ++presses; };
  window->setContent(views::vStack(
      0, {views::button("Go", count), views::button("Stay", count, false),
          views::toggle("Switch", {true, [&](bool isOn) { values.push_back(isOn); }})}));
  window->makeKeyAndOrderFront();
  this->backend_.press(this->name, "Go");
  EXPECT_EQ(presses, 1);
  this->backend_.press(this->name, "Stay");
  EXPECT_EQ(presses, 1);
  this->backend_.press(this->name, "Switch");
  EXPECT_EQ(values, std::vector{false});
}

TYPED_TEST_P(WindowsContract, AFieldKeepsTheCursorWhileWhatIsAroundItChanges) {
  auto window = this->create();
  std::string text;
  const std::function<View()> tree = [&] {
    std::vector<View> lines(text.size() % 2, views::text("odd"));
    lines.push_back(views::textField("Word", {text, [&](const std::string& typed) {
                                                text = typed;
                                                window->setContent(tree());
                                              }}));
    return views::vStack(0, std::move(lines));
  };
  window->setContent(tree());
  window->makeKeyAndOrderFront();
  this->backend_.type(this->name, "Word", "abcde");
  EXPECT_EQ(text, "abcde");
  EXPECT_TRUE(this->backend_.shows(this->name, "odd"));
}

REGISTER_TYPED_TEST_SUITE_P(WindowsContract, IsOnTheScreenFromOrderingFrontToClosing,
                            IsInvisibleWithoutOpacity, DrawsTheTreeThatItWasGivenLast,
                            HandsOnWhatTheUserDoesToControlsThatAreEnabled,
                            AFieldKeepsTheCursorWhileWhatIsAroundItChanges);

}  // namespace kivra
