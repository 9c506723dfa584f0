#pragma once

#include <functional>
#include <utility>

#include "platform/accessibility.h"
#include "platform/atspi/accessibility_bus.h"
#include "platform/run_loop.h"

namespace kivra {

/// Accessibility by AT-SPI 2: the focused object and its texts. An application that had the focus
/// before the program started is known from its next change of focus on. Keeps the run loop turning
/// while it waits.
class AtspiAccessibility : public Accessibility {
 public:
  /// Asks the application in front to handle the keys that it has been sent; the answer says
  /// whether it is still at it.
  using Ping = std::function<std::function<bool()>()>;

  AtspiAccessibility(AccessibilityBus& bus, RunLoop& runLoop, Ping ping)
      : bus_(bus), runLoop_(runLoop), ping_(std::move(ping)) {}

  AccessibilityElementPointer createSystemWide() override;
  AccessibilityValue copyAttributeValue(AccessibilityElement& element,
                                        std::string_view attribute) override;

 private:
  AccessibilityValue focusedElement();
  AccessibilityValue text(const AccessibleObject& object, AccessibleTextPart part);
  void waitForKeys();

  AccessibilityBus& bus_;
  RunLoop& runLoop_;
  Ping ping_;
};

}  // namespace kivra
