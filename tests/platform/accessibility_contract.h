#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <variant>

#include "platform/accessibility.h"

namespace kivra {

/// Null when nothing tells where the focus is.
inline AccessibilityElementPointer focusedElement(Accessibility& accessibility) {
  const auto systemWide = accessibility.createSystemWide();
  if (!systemWide) return nullptr;
  const auto value =
      accessibility.copyAttributeValue(*systemWide, accessibility_attributes::focusedUIElement);
  const auto* element = std::get_if<AccessibilityElementPointer>(&value);
  return element == nullptr ? nullptr : *element;
}

/// The text that the attribute of the focused element has.
inline std::optional<std::string> readFocused(Accessibility& accessibility, const char* attribute) {
  const auto element = focusedElement(accessibility);
  if (!element) return std::nullopt;
  const auto value = accessibility.copyAttributeValue(*element, attribute);
  const auto* text = std::get_if<std::string>(&value);
  return text == nullptr ? std::nullopt : std::optional(*text);
}

/// What accessibility tells, wherever it is had from. `Backend` is default-constructible and has
/// `Accessibility& accessibility()`; an application: `openField(text)` with the focus, in which the
/// user does `selectAll()`, and `openPassword()`, into which they have typed; and `bool
/// turnUntil(condition, timeout)`, which turns the run loop and answers whether the condition
/// holds.
template <class Backend>
class AccessibilityContract : public ::testing::Test {
 protected:
  std::optional<std::string> read(const char* attribute) {
    return readFocused(backend_.accessibility(), attribute);
  }
  /// Whether the attribute gets this text, while the user does something over and over.
  bool reads(
      const char* attribute, const std::string& expected,
      const std::function<void()>& action = [] {}) {
    const auto isRead = [&] {
      action();
      return read(attribute) == expected;
    };
    return backend_.turnUntil(isRead, std::chrono::seconds(20));
  }

  Backend backend_;
};
TYPED_TEST_SUITE_P(AccessibilityContract);

TYPED_TEST_P(AccessibilityContract, TellsTheTextOfTheFocusedFieldAndItsSelection) {
  this->backend_.openField("открыто 😀");
  EXPECT_TRUE(this->reads(accessibility_attributes::value, "открыто 😀"));
  EXPECT_TRUE(this->reads(accessibility_attributes::selectedText, "открыто 😀",
                          [this] { this->backend_.selectAll(); }));
  EXPECT_EQ(this->read("AXTitle"), std::nullopt);
}

TYPED_TEST_P(AccessibilityContract, TellsNothingOfAPassword) {
  this->backend_.openPassword();
  this->backend_.selectAll();
  EXPECT_NE(focusedElement(this->backend_.accessibility()), nullptr);
  EXPECT_FALSE(this->backend_.turnUntil(
      [&] {
        return this->read(accessibility_attributes::value) ||
               this->read(accessibility_attributes::selectedText);
      },
      std::chrono::milliseconds(500)));
}

REGISTER_TYPED_TEST_SUITE_P(AccessibilityContract, TellsTheTextOfTheFocusedFieldAndItsSelection,
                            TellsNothingOfAPassword);

}  // namespace kivra
