#include "text/text_access.h"

#include <chrono>
#include <utility>

#include "support/text.h"

namespace kivra {

namespace {

constexpr auto copyWait = std::chrono::milliseconds(150);
constexpr auto pollSlice = std::chrono::milliseconds(5);
constexpr auto restoreDelay = std::chrono::milliseconds(150);

}  // namespace

TextAccess::TextAccess(const Environment& environment)
    : env_(environment), clipboard_(env_.pasteboard) {}

std::optional<SelectedText> TextAccess::readSelection() {
  if (auto read = readFocusedElement()) return read;
  return copyViaClipboard();
}

void TextAccess::replaceSelection(const std::string& text) { paste(text, borrowPasteboard()); }

// What is typed while the snapshot is waited for must not find everything selected.
void TextAccess::replaceField(const std::string& text) {
  auto saved = borrowPasteboard();
  postCommandKey(key_codes::a);
  paste(text, std::move(saved));
}

void TextAccess::paste(const std::string& text, Clipboard::Snapshot saved) {
  env_.pasteboard.clearContents();
  env_.pasteboard.setString(text, pasteboardTypeString);
  postCommandKey(key_codes::v);
  isPasted_ = true;
  env_.runLoop.asyncAfter(restoreDelay, [weak = weak_from_this(), saved = std::move(saved)] {
    const auto access = weak.lock();
    if (!access) return;
    access->isPasted_ = false;
    access->clipboard_.restore(saved);
  });
}

// What an earlier paste has put there is neither the user's nor a selection.
Clipboard::Snapshot TextAccess::borrowPasteboard() {
  env_.runLoop.runUntil([this] { return !isPasted_; }, pollSlice);
  return clipboard_.snapshot();
}

void TextAccess::postCommandKey(std::uint16_t keyCode) {
  env_.keyOutput.postKey(keyCode, event_flags::command);
}

std::function<void()> TextAccess::undoOfPaste() {
  return [weak = weak_from_this()] {
    if (const auto access = weak.lock()) access->postCommandKey(key_codes::z);
  };
}

AccessibilityElementPointer TextAccess::focusedElement() {
  const auto systemWide = env_.accessibility.createSystemWide();
  if (!systemWide) return nullptr;
  const auto value = env_.accessibility.copyAttributeValue(
      *systemWide, accessibility_attributes::focusedUIElement);
  const auto* element = std::get_if<AccessibilityElementPointer>(&value);
  return element == nullptr ? nullptr : *element;
}

std::optional<std::string> TextAccess::stringAttribute(AccessibilityElement& element,
                                                       const char* attribute) {
  const auto value = env_.accessibility.copyAttributeValue(element, attribute);
  const auto* string = std::get_if<std::string>(&value);
  if (string == nullptr) return std::nullopt;
  return text::validUtf8(*string);
}

std::optional<SelectedText> TextAccess::readFocusedElement() {
  auto element = focusedElement();
  if (!element) return std::nullopt;
  auto selected = stringAttribute(*element, accessibility_attributes::selectedText);
  if (selected && !selected->empty()) {
    return SelectedText{std::move(*selected), true, std::move(element)};
  }
  auto value = stringAttribute(*element, accessibility_attributes::value);
  if (!value) return std::nullopt;
  return SelectedText{std::move(*value), false, std::move(element)};
}

std::optional<SelectedText> TextAccess::copyViaClipboard() {
  const auto saved = borrowPasteboard();
  const auto before = env_.pasteboard.changeCount();
  postCommandKey(key_codes::c);
  auto copied = waitForPasteboardChange(before) ? plainText() : std::string();
  auto read =
      copied.empty() ? copyAllViaClipboard() : SelectedText{std::move(copied), true, nullptr};
  clipboard_.restore(saved);
  return read;
}

std::optional<SelectedText> TextAccess::copyAllViaClipboard() {
  const auto before = env_.pasteboard.changeCount();
  postCommandKey(key_codes::a);
  postCommandKey(key_codes::c);
  auto copied = waitForPasteboardChange(before) ? plainText() : std::string();
  if (copied.empty()) return std::nullopt;
  return SelectedText{std::move(copied), false, nullptr};
}

bool TextAccess::waitForPasteboardChange(std::int64_t changeCount) {
  const auto deadline = env_.clock.now() + copyWait;
  const auto isChanged = [&] { return env_.pasteboard.changeCount() != changeCount; };
  env_.runLoop.runUntil([&] { return env_.clock.now() >= deadline || isChanged(); }, pollSlice);
  return isChanged();
}

std::string TextAccess::plainText() {
  return text::validUtf8(env_.pasteboard.stringForType(pasteboardTypeString).value_or(""));
}

}  // namespace kivra
