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
  /// for 0.3 s, for as long as the pasteboard's owner takes, and until an earlier paste has given
  /// it back; keeps the run loop turning meanwhile. Throws PlatformError when what is on the
  /// pasteboard would be lost.
  std::optional<SelectedText> readSelection();

  /// Pastes `text` over the selection. Returns at once; the pasteboard is restored 0.15 s later.
  /// Throws as `readSelection` does, before anything has changed.
  void replaceSelection(const std::string& text);

  /// Selects the whole field and replaces the selection.
  void replaceField(const std::string& text);

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
  Clipboard::Snapshot borrowPasteboard();
  void paste(const std::string& text, Clipboard::Snapshot saved);

  Environment env_;
  Clipboard clipboard_;
  bool isPasted_ = false;  // and the pasteboard not yet given back
};

}  // namespace kivra
