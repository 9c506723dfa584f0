#include "platform/embedded/embedded_accessibility.h"

namespace kivra::embedded {

AccessibilityElementPointer EmbeddedAccessibility::createSystemWide() {
  return std::make_shared<SystemWide>();
}

AccessibilityValue EmbeddedAccessibility::copyAttributeValue(AccessibilityElement& element,
                                                             std::string_view attribute) {
  const auto& front = application_.front();
  if (!front.accessible) return std::monostate();
  if (dynamic_cast<SystemWide*>(&element) != nullptr) {
    if (attribute != accessibility_attributes::focusedUIElement) return std::monostate();
    return AccessibilityElementPointer(std::make_shared<FocusedField>());
  }
  if (front.secure) return std::monostate();
  if (attribute == accessibility_attributes::selectedText) return front.field.selectedText();
  if (attribute == accessibility_attributes::value) return front.field.text();
  return std::monostate();
}

}  // namespace kivra::embedded
