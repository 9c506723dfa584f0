#pragma once

#include "platform/accessibility.h"
#include "platform/linux/accessibility_bus.h"
#include "platform/run_loop.h"

namespace kivra {

/// Accessibility by AT-SPI 2: the focused object and its texts. An application that had the focus
/// before the program started is known from its next change of focus on. Keeps the run loop turning
/// while it waits.
class AtspiAccessibility : public Accessibility {
 public:
  AtspiAccessibility(AccessibilityBus& bus, RunLoop& runLoop) : bus_(bus), runLoop_(runLoop) {}

  AccessibilityElementPointer createSystemWide() override;
  AccessibilityValue copyAttributeValue(AccessibilityElement& element,
                                        std::string_view attribute) override;

 private:
  AccessibilityValue text(const AccessibleObject& object, AccessibleTextPart part);

  AccessibilityBus& bus_;
  RunLoop& runLoop_;
};

}  // namespace kivra
