#pragma once

#include "platform/accessibility.h"
#include "platform/embedded/embedded_application.h"

namespace kivra::embedded {

/// What the application in front tells of its focused field, if it tells anything.
class EmbeddedAccessibility : public Accessibility {
 public:
  explicit EmbeddedAccessibility(EmbeddedApplication& application) : application_(application) {}

  AccessibilityElementPointer createSystemWide() override;
  AccessibilityValue copyAttributeValue(AccessibilityElement& element,
                                        std::string_view attribute) override;

 private:
  struct SystemWide : AccessibilityElement {};
  struct FocusedField : AccessibilityElement {};

  EmbeddedApplication& application_;
};

}  // namespace kivra::embedded
