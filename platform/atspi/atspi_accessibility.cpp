#include "platform/atspi/atspi_accessibility.h"

#include <utility>

namespace kivra {

namespace {

using namespace std::chrono_literals;

constexpr auto keysWait = std::chrono::milliseconds(500);
constexpr auto answerWait = std::chrono::milliseconds(100);
constexpr auto prompt = std::chrono::milliseconds(5);

class SystemWide : public AccessibilityElement {};

class Element : public AccessibilityElement {
 public:
  explicit Element(AccessibleObject place) : object(std::move(place)) {}
  const AccessibleObject object;
};

}  // namespace

AccessibilityElementPointer AtspiAccessibility::createSystemWide() {
  return bus_.isEnabled() ? std::make_shared<SystemWide>() : nullptr;
}

AccessibilityValue AtspiAccessibility::copyAttributeValue(AccessibilityElement& element,
                                                          std::string_view attribute) {
  if (dynamic_cast<SystemWide*>(&element) != nullptr) {
    if (attribute != accessibility_attributes::focusedUIElement) return {};
    return focusedElement();
  }
  const auto* const known = dynamic_cast<Element*>(&element);
  if (known == nullptr) return {};
  if (attribute == accessibility_attributes::selectedText) {
    return text(known->object, AccessibleTextPart::selection);
  }
  if (attribute == accessibility_attributes::value) {
    return text(known->object, AccessibleTextPart::whole);
  }
  return {};
}

AccessibilityValue AtspiAccessibility::focusedElement() {
  if (!bus_.focusedObject()) return {};
  waitForKeys();  // which may move the focus
  auto focused = bus_.focusedObject();
  if (!focused) return {};
  return std::make_shared<Element>(std::move(*focused));
}

// A busy application answers questions before keys that came earlier. What they are about to select
// would not be there yet, and the whole text would be taken and replaced for it.
void AtspiAccessibility::waitForKeys() {
  const auto deadline = std::chrono::steady_clock::now() + keysWait;
  const auto isPending = ping_();
  runLoop_.runUntil([&] { return !isPending() || std::chrono::steady_clock::now() >= deadline; });
}

// The object may be one of the program's own windows, which answers from the run loop.
AccessibilityValue AtspiAccessibility::text(const AccessibleObject& object,
                                            AccessibleTextPart part) {
  const auto deadline = std::chrono::steady_clock::now() + answerWait;
  auto answer = bus_.text(object, part, deadline);
  answer.wait_for(prompt);
  const auto isThere = [&answer] { return answer.wait_for(0s) == std::future_status::ready; };
  runLoop_.runUntil([&] { return isThere() || std::chrono::steady_clock::now() >= deadline; });
  if (!isThere()) return {};
  auto text = answer.get();
  if (!text) return {};
  return std::move(*text);
}

}  // namespace kivra
