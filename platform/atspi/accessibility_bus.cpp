#include "platform/atspi/accessibility_bus.h"

#include <chrono>

#include "platform/atspi/accessibility_watcher.h"

namespace kivra {

namespace {

// The keyboard may be frozen meanwhile. An application on a busy machine answers in a few ms.
constexpr auto selectionWait = std::chrono::milliseconds(50);

}  // namespace

AccessibilityBus::AccessibilityBus() : watcher_(std::make_unique<AccessibilityWatcher>()) {}
AccessibilityBus::~AccessibilityBus() = default;

bool AccessibilityBus::isEnabled() const { return watcher_->isEnabled; }
void AccessibilityBus::meetApplications() { watcher_->meetApplications(); }
void AccessibilityBus::requestEnabled() { watcher_->requestEnabled(); }
bool AccessibilityBus::isPasswordFocused() const { return watcher_->isPasswordFocused; }

std::optional<AccessibleObject> AccessibilityBus::focusedObject() const {
  return watcher_->focusedObject();
}

std::future<std::optional<std::string>> AccessibilityBus::text(
    const AccessibleObject& object, AccessibleTextPart part,
    std::chrono::steady_clock::time_point deadline) {
  return watcher_->ask(object, deadline, [part](AccessibleText& text) { return text.read(part); });
}

bool AccessibilityBus::hasSelectionBehind(std::size_t characters) {
  if (!watcher_->mayHaveSelection.exchange(false)) return false;
  const auto object = watcher_->focusedObject();
  if (!object) return false;
  const auto deadline = std::chrono::steady_clock::now() + selectionWait;
  auto answer =
      watcher_->ask(*object, deadline, [](AccessibleText& text) { return text.selectionStart(); });
  if (answer.wait_until(deadline) != std::future_status::ready) return false;
  const auto start = answer.get();
  return start && static_cast<std::size_t>(*start) >= characters;
}

}  // namespace kivra
