#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <variant>

namespace kivra {

/// A handle of an object of some application's user interface, released when it is destroyed.
class AccessibilityElement {
 public:
  virtual ~AccessibilityElement() = default;
};

using AccessibilityElementPointer = std::shared_ptr<AccessibilityElement>;

/// The value of an attribute: none when the element has no such attribute, does not answer, or the
/// value is neither text nor an element.
using AccessibilityValue = std::variant<std::monostate, std::string, AccessibilityElementPointer>;

/// Attribute names.
namespace accessibility_attributes {
inline constexpr const char* focusedUIElement = "AXFocusedUIElement";
inline constexpr const char* selectedText = "AXSelectedText";
inline constexpr const char* value = "AXValue";
}  // namespace accessibility_attributes

/// What applications tell of their user interface.
class Accessibility {
 public:
  virtual ~Accessibility() = default;

  /// The object whose focused element is the one with the keyboard; null when there is no access.
  virtual AccessibilityElementPointer createSystemWide() = 0;

  /// The value of the attribute; none after 100 ms without an answer. Nothing is ever read from a
  /// password field: its text attributes have no value.
  virtual AccessibilityValue copyAttributeValue(AccessibilityElement& element,
                                                std::string_view attribute) = 0;
};

}  // namespace kivra
