#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "layout/key_output.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/pasteboard.h"
#include "platform/run_loop.h"
#include "text/clipboard.h"

namespace kivra {

/// Text read from the focused application.
struct SelectedText {
  std::string text;          ///< always valid UTF-8
  bool isSelection = false;  ///< false: the whole field, which must be selected before replacing
  AccessibilityElementPointer element;  ///< where the text came from; null: from the pasteboard
};

/// Reads the selected text of the focused application and puts another in its place, by way of the
/// accessibility interface or else of the pasteboard and Command chords. What the user has on the
/// pasteboard is put back afterwards.
class TextAccess : public std::enable_shared_from_this<TextAccess> {
 public:
  struct Environment {
    Accessibility& accessibility;
    Pasteboard& pasteboard;
    KeyOutput& keyOutput;
    RunLoop& runLoop;
    Clock& clock;
  };

  explicit TextAccess(const Environment& environment);

  /// The selected text, else the whole text of the field; nothing when neither can be read. Blocks
  /// for 0.3 s at most and keeps the run loop turning meanwhile.
  std::optional<SelectedText> readSelection();

  /// Pastes `text` over the selection. Returns at once; the pasteboard is restored 0.15 s later.
  void replaceSelection(const std::string& text);

  /// Posts key-down and key-up with Command alone.
  void postCommandKey(std::uint16_t keyCode);

  /// Takes back the last paste by Command+Z; does nothing once this object is gone.
  std::function<void()> undoOfPaste();

 private:
  AccessibilityElementPointer focusedElement();
  std::optional<std::string> stringAttribute(AccessibilityElement& element, const char* attribute);
  std::optional<SelectedText> readFocusedElement();
  std::optional<SelectedText> copyViaClipboard();
  std::optional<SelectedText> copyAllViaClipboard();
  bool waitForPasteboardChange(std::int64_t changeCount);
  std::string plainText();

  Environment env_;
  Clipboard clipboard_;
};

}  // namespace kivra
