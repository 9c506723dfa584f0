#include "platform/atspi/accessibility_bus.h"

#include <chrono>
#include <utility>

#include "platform/atspi/accessibility_watcher.h"

namespace kivra {

namespace {

// The user's keys wait meanwhile. An application on a busy machine answers in a few ms; one that
// did not is left in peace, or each word would cost that much.
constexpr auto selectionWait = std::chrono::milliseconds(50);
constexpr auto selectionRespite = std::chrono::seconds(2);

}  // namespace

AccessibilityBus::AccessibilityBus() : watcher_(std::make_unique<AccessibilityWatcher>()) {}
AccessibilityBus::~AccessibilityBus() = default;

bool AccessibilityBus::isEnabled() const { return watcher_->isEnabled; }
void AccessibilityBus::meetApplications() { watcher_->meetApplications(); }
void AccessibilityBus::requestEnabled() { watcher_->requestEnabled(); }
bool AccessibilityBus::isPasswordFocused() const { return watcher_->focus.isPassword; }

std::chrono::steady_clock::time_point AccessibilityBus::lastCaretMove() {
  if (!std::exchange(isCaretFollowed_, true)) watcher_->followCaret();
  return watcher_->focus.lastCaretMove;
}

std::optional<AccessibleObject> AccessibilityBus::focusedObject() const {
  return watcher_->focus.get();
}

std::future<std::optional<std::string>> AccessibilityBus::text(
    const AccessibleObject& object, AccessibleTextPart part,
    std::chrono::steady_clock::time_point deadline) {
  return watcher_->ask(object, deadline, [part](AccessibleText& text) { return text.read(part); });
}

bool AccessibilityBus::hasSelectionBehind(std::size_t characters) {
  if (!watcher_->focus.mayHaveSelection.exchange(false)) return false;
  const auto object = watcher_->focus.get();
  if (!object) return false;
  const auto now = std::chrono::steady_clock::now();
  if (now < nextQuestion_) return false;
  const auto deadline = now + selectionWait;
  auto answer =
      watcher_->ask(*object, deadline, [](AccessibleText& text) { return text.selectionStart(); });
  if (answer.wait_until(deadline) != std::future_status::ready) {
    nextQuestion_ = deadline + selectionRespite;
    return false;
  }
  const auto start = answer.get();
  return start && static_cast<std::size_t>(*start) >= characters;
}

}  // namespace kivra
